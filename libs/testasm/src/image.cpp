// Test programs as bytes, and the way there and back.
#include "mlds/testasm/image.h"

#include <algorithm>
#include <map>

#include "codec.h"
#include "ruletest/opcodes.h"

namespace mlds_testasm {

Layout LayOut(const Test& test) {
    Layout layout;
    layout.indexOf.resize(test.nodes.size());
    const auto place = [&](NodeId id) {
        layout.indexOf[static_cast<std::size_t>(id)] = static_cast<int>(layout.order.size());
        layout.order.push_back(id);
    };
    for (NodeId id = 0; id < test.size(); ++id) {
        if (!test.At(id).bShared) place(id);
    }
    // A shared node is made after those that it links to, so that these have their places.
    std::map<std::pair<int, std::array<int, 4>>, int> placed;
    for (NodeId id = 0; id < test.size(); ++id) {
        const Node& node = test.At(id);
        if (!node.bShared) continue;
        const auto key = std::pair(node.pInfo->number, PlacedOperands(node, layout.indexOf));
        const auto [entry, bNew] = placed.emplace(key, static_cast<int>(layout.order.size()));
        if (bNew) {
            place(id);
        } else {
            layout.indexOf[static_cast<std::size_t>(id)] = entry->second;
        }
    }
    return layout;
}

Image Lower(const Program& program, Diagnostics& diagnostics) {
    Image image;
    for (const Test& test : program.tests) {
        Layout layout = LayOut(test);
        if (layout.order.size() > kMostInstructions) {
            diagnostics.Error(test.header().place,
                              "expected at most 256 instructions, header and constants included; "
                              "test '" +
                                  test.name + "' has " + std::to_string(layout.order.size()));
            continue;
        }
        const int base = static_cast<int>(image.code.size());
        for (const NodeId id : layout.order) {
            image.code.push_back(Encode(test.At(id), layout.indexOf));
        }
        image.tests.push_back({test.name, base, std::move(layout.order)});
    }
    return image;
}

namespace {

// The tests by their bases, those that begin at an instruction of their own.
std::vector<ImageTest> Sorted(const Image& image, Diagnostics& diagnostics) {
    std::vector<ImageTest> tests;
    for (const ImageTest& test : image.tests) {
        const bool bInside = test.base >= 0 && test.base < static_cast<int>(image.code.size());
        if (bInside && std::none_of(tests.begin(), tests.end(), [&](const ImageTest& other) {
                return other.base == test.base;
            })) {
            tests.push_back({test.name, test.base, {}});
        } else {
            diagnostics.Error({0, test.base},
                              "expected a header for test '" + Shortened(test.name) + "' alone");
        }
    }
    std::sort(tests.begin(), tests.end(),
              [](const ImageTest& a, const ImageTest& b) { return a.base < b.base; });
    return tests;
}

}  // namespace

Program Lift(const Image& image, Diagnostics& diagnostics) {
    Program program;
    const std::vector<ImageTest> tests = Sorted(image, diagnostics);
    const int size = static_cast<int>(image.code.size());
    int covered = 0;
    const auto expectCovered = [&](int end) {
        if (covered >= end) return;
        diagnostics.Error({0, covered}, "from here to " + std::to_string(end - 1) +
                                            ": expected instructions that belong to a test");
    };
    for (std::size_t i = 0; i < tests.size(); ++i) {
        const ImageTest& from = tests[i];
        expectCovered(from.base);
        const int next = i + 1 < tests.size() ? tests[i + 1].base : size;
        covered = std::min(next, from.base + kMostInstructions);
        Test test;
        test.name = from.name;
        test.nodes.clear();
        for (int at = from.base; at < covered; ++at) {
            const Bytes& bytes = image.code[static_cast<std::size_t>(at)];
            std::string why;
            Node node = Decode(bytes, at == from.base, covered - from.base, &why);
            node.place = {0, at};
            if (!why.empty() && at == from.base) diagnostics.Error(node.place, why);
            if (!why.empty() && at != from.base) diagnostics.Warning(node.place, why);
            test.Add(std::move(node));
        }
        NameNumbers(test);
        program.tests.push_back(std::move(test));
    }
    expectCovered(size);
    return program;
}

}  // namespace mlds_testasm
