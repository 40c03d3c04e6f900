// Test programs as bytes, and the way there and back.
#ifndef MLDS_TESTASM_IMAGE_H
#define MLDS_TESTASM_IMAGE_H

#include <string>
#include <vector>

#include "mlds/testasm/model.h"

namespace mlds_testasm {

/// A test reaches its header and 255 instructions more.
inline constexpr int kMostInstructions = 256;

struct ImageTest {
    std::string name;
    int base = 0;
    std::vector<NodeId> order;  ///< the nodes of the lowered test, by instruction

    bool operator==(const ImageTest& other) const {
        return name == other.name && base == other.base;
    }
};

/// The instructions of all tests, each test's behind its header, and where the tests begin.
struct Image {
    std::vector<Bytes> code;
    std::vector<ImageTest> tests;

    bool operator==(const Image&) const = default;
};

/// Where the instructions of a test go: those of the author as they stand, then the shared ones.
struct Layout {
    std::vector<NodeId> order;  ///< the first node of every instruction
    std::vector<int> indexOf;   ///< of every node
};
Layout LayOut(const Test& test);

/// Puts the tests, whose links must lead to their own nodes (Validate says so), one behind the
/// other. A test that is too long is an error.
Image Lower(const Program& program, Diagnostics& diagnostics);

/// Reads the tests back, in the order of their bases; each reaches to the base of the next one.
/// Warnings say what is no instruction. Errors say what a program cannot hold: instructions that
/// belong to no test, links of headers that lead out of their test; if there are none, lowering the
/// result gives the same bytes.
Program Lift(const Image& image, Diagnostics& diagnostics);

}  // namespace mlds_testasm

#endif
