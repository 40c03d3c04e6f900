// The interpreter of rule tests against a model of it, on random programs in random containers.
//
//   MLDS_PROGRAMS=n   how many programs (20,000)
//   MLDS_SEED=n       the first container's seed; alone, this container's programs and no others
#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>
#include <sstream>

#include "support/model/interpreter.h"
#include "support/model/randomworld.h"
#include "support/tiers.h"

namespace mlds_test {
namespace {

constexpr int kProgramsPerWorld = 8;
constexpr int kDefaultPrograms = 20000;
constexpr int kBudget = 5000;  // instructions; what runs longer is not compared

int Setting(const char* name, int otherwise) {
    const char* text = std::getenv(name);
    return text != nullptr ? std::atoi(text) : otherwise;
}

// What the library's observer is told, in the model's words.
class Recorder final : public CPlexaTestObserver {
public:
    explicit Recorder(Layout& layout) : m_layout(layout) {}

    void AfterTest(bool bHolds) override { bHeld = bHolds; }
    void BeforeInstruction(const CPlexaTestStep& step) override { Add(false, step, {}); }
    void AfterInstruction(const CPlexaTestStep& step, PTestFuncReturnType result) override {
        Add(true, step, ModelInterpreter::AsSeen(step.instruction[0], result.value));
    }

    std::vector<TraceStep> trace;
    bool bHeld = false;

private:
    void Add(bool bAfter, const CPlexaTestStep& step, std::optional<int> result) {
        trace.push_back({bAfter, step.index, step.stream->GetStreamIndex(),
                         m_layout.IdOf(step.position), step.direction, result});
    }

    Layout& m_layout;
};

std::string Text(const Layout& layout, const TraceStep& step) {
    return std::string(step.bAfter ? "after " : "before ") + std::to_string(step.index) + " in s" +
           std::to_string(step.stream) + " at " +
           Where(step.position == kNone ? nullptr : layout[step.position].self) +
           (step.direction == sdRight ? " rightward" : " leftward") +
           (step.result ? " gives " + std::to_string(*step.result) : "");
}

// What is different first, as text; empty if nothing is.
class Comparison {
public:
    Comparison(RandomWorld& world, Layout& layout, ModelInterpreter& model)
        : m_world(world), m_layout(layout), m_model(model) {}

    std::string Run(const RandomProgram& program, bool bExpected, bool bObserved, bool bOwnTest) {
        m_different.clear();
        const auto code = reinterpret_cast<Program>(program.code.data());
        CPlexaTest test(&m_world.plexa);
        Recorder recorder(m_layout);
        CPlexaTestObserver* pObserver = bObserved ? &recorder : nullptr;
        m_world.plexa.SetTestObserver(pObserver);
        test.SetObserver(pObserver);
        const bool bHolds = bOwnTest ? test.Test("random", code, program.base)
                                     : m_world.plexa.Test("random", code, program.base);
        m_world.plexa.SetTestObserver(nullptr);
        if (bObserved) CompareTraces(recorder.trace);
        Expect("the result", bExpected, bHolds);
        if (bObserved) Expect("the result that was observed", bHolds, recorder.bHeld);
        Expect("an advance mark is left", false, test.getSyncMarkItsOKtoAdvanceFrom() != nullptr);
        CompareVariables();
        CompareStructure();
        return m_different;
    }

private:
    template <typename T>
    void Expect(const std::string& what, const T& expected, const T& actual) {
        if (expected == actual || !m_different.empty()) return;
        std::ostringstream text;
        text << what << ": the model has " << expected << ", the library " << actual;
        m_different = text.str();
    }

    void CompareTraces(std::vector<TraceStep> trace) {
        const std::vector<TraceStep>& expected = m_model.Trace();
        // From a test that is ended there is only a way out.
        if (m_model.WasEnded()) {
            while (trace.size() > expected.size() && trace.back().bAfter) trace.pop_back();
        }
        if (expected == trace) return;
        for (std::size_t i = 0; i < std::max(expected.size(), trace.size()); ++i) {
            const std::string step = "step " + std::to_string(i);
            Expect(step, i < expected.size() ? Text(m_layout, expected[i]) : "no more",
                   i < trace.size() ? Text(m_layout, trace[i]) : "no more");
            if (!m_different.empty()) return;
        }
    }

    void CompareVariables() {
        CVarList& list = m_world.varList;
        for (int i = 0; i < list.GetNumVars(); ++i) {
            const ModelVariable& variable = m_model.Variables()[static_cast<std::size_t>(i)];
            const std::string name = "variable " + std::to_string(i);
            const Id bound = m_layout.IdOf(ModelInterpreter::Read(list.GetVarPtr(i)));
            Expect(name + " bound", m_model.Bound(list.GetVarPtr(i)), bound);
            if (m_model.WasEnded()) continue;
            Expect(name + " dirty", variable.bDirty, list.IsDirty(i));
            CStreamObj* pDup = list.GetDupVarPtr(i);
            if (!variable.bToken) {
                Expect(name + " pending", variable.mark, m_layout.IdOf(pDup));
            } else {
                Expect(name + " has a pending token", variable.token.has_value(), pDup != nullptr);
            }
            if (variable.token && pDup != nullptr) {
                CompareToken(name + " pending", *variable.token, pDup);
            }
        }
    }

    void CompareToken(const std::string& name, const TokenValues& expected, CStreamObj* pToken) {
        Expect(name + " stream", expected.stream, pToken->GetStream()->GetStreamIndex());
        for (int i = 0; i < pToken->GetStream()->GetNumFields(); ++i) {
            Expect(name + " field " + std::to_string(i), expected.At(i),
                   static_cast<CToken*>(pToken)->GetFieldValueIndex(i));
        }
    }

    // Tokens are what the test assigned to them, types included, and fences close again.
    void CompareStructure() {
        Id last = kNone;  // the token before
        for (Id id = 0; id < m_layout.Count(); ++id) {
            const LayoutObject& object = m_layout[id];
            if (object.bToken) {
                CompareToken("object", object.token, object.self);
                if (last != kNone) {
                    Expect("two tokens are equal", object.token.Equals(m_layout[last].token),
                           static_cast<CToken*>(object.self)
                               ->TokenCompare(static_cast<CToken*>(m_layout[last].self)));
                }
                last = id;
            } else {
                const Id next = m_layout.NextInFence(id, sdRight, kNone);
                Expect("what lies beyond a mark", next,
                       m_layout.IdOf(object.self->GetAdjacentStreamObj(sdRight, true)));
            }
        }
    }

    RandomWorld& m_world;
    Layout& m_layout;
    ModelInterpreter& m_model;
    std::string m_different;
};

struct Totals {
    long compared = 0;
    long held = 0;
    long tooLong = 0;
    int different = 0;
    ModelCoverage coverage;
};

// A difference is looked at a second time, with everything described.
void RunWorld(int seed, Totals& totals, bool bDescribe = false) {
    Random random(static_cast<std::uint64_t>(seed));
    RandomWorld world(random);
    Layout layout(world.plexa, world.ranking);
    ModelInterpreter model(layout, world.varList);
    std::swap(model.Coverage(), totals.coverage);
    Comparison comparison(world, layout, model);
    bool bFences = false;
    for (int i = 0; i < world.plexa.GetNumStreams(); ++i) bFences = bFences || world.plexa.Fence(i);
    for (int n = 0; n < kProgramsPerWorld; ++n) {
        const RandomProgram program = MakeProgram(random, world);
        const std::string before = bDescribe ? world.Describe() : "";
        const std::optional<bool> expected =
            model.Test(reinterpret_cast<Program>(program.code.data()), program.base, kBudget);
        if (!expected) {
            ++totals.tooLong;
            continue;
        }
        ++totals.compared;
        totals.held += *expected ? 1 : 0;
        const bool bObserved = !random.OneIn(4);
        // Without fences any interpreter will do; they follow the container's own.
        const bool bOwnTest = !bFences && random.OneIn(2);
        const std::string different = comparison.Run(program, *expected, bObserved, bOwnTest);
        if (different.empty()) continue;
        ++totals.different;
        ADD_FAILURE() << different << "\nMLDS_SEED=" << seed << ", program " << n << "\n"
                      << before << program.List();
        if (!bDescribe) RunWorld(seed, totals, true);
        return;  // the two go separate ways from here
    }
    std::swap(model.Coverage(), totals.coverage);
}

// The model stands on its own walks and searches: these against the container's, between any marks.
TEST(Model, NavigatesLikeTheContainer) {
    int differences = 0;
    for (int seed = 1; seed <= 3000 && differences < 3; ++seed) {
        Random random(static_cast<std::uint64_t>(seed));
        RandomWorld world(random);
        Layout layout(world.plexa, world.ranking);
        const auto anyMark = [&] {
            Id id = random.Below(layout.Count());
            while (!layout.IsMark(id)) id = random.Below(layout.Count());
            return id;
        };
        for (int n = 0; n < 20; ++n) {
            const Id from = anyMark();
            const Id to = anyMark();
            const ScanDirectionType direction = random.OneIn(2) ? sdRight : sdLeft;
            auto* pFrom = static_cast<CSyncMark*>(layout[from].self);
            auto* pTo = static_cast<CSyncMark*>(layout[to].self);
            const int stream = layout[to].stream;
            CStream* pStream = pTo->GetStream();
            CPlexa& plexa = world.plexa;
            const bool bSame =
                layout.Reaches(from, to, direction) == plexa.CSMSearch(pFrom, pTo, direction) &&
                layout.SomeMark(stream, from, direction) ==
                    layout.IdOf(plexa.SubContext(pStream, pFrom, direction)) &&
                layout.NearestMark(stream, from, direction) ==
                    layout.IdOf(plexa.Context(pStream, pFrom, direction)) &&
                layout.EndOfRun(stream, from, direction) ==
                    layout.IdOf(plexa.Move(pStream, pFrom, direction));
            if (bSame) continue;
            ++differences;
            ADD_FAILURE() << "seed " << seed << ", from " << Where(pFrom) << " to " << Where(pTo)
                          << (direction == sdRight ? " rightward\n" : " leftward\n")
                          << world.Describe();
        }
    }
}

// Whether the programs came to everything that there is, each in both ways.
void ExpectSeen(Totals& totals) {
    const int opcodes[] = {1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 14, 15, 16, 17,
                           18, 19, 22, 23, 24, 26, 27, 28, 29, 30, 31, 32, 33, 34,
                           35, 36, 38, 40, 41, 42, 43, 44, 45, 49, 50, 51, 52};
    for (const int opcode : opcodes) {
        const auto [nFailed, nHeld] = totals.coverage.outcomes[opcode];
        std::cout << "opcode " << opcode << ": failed " << nFailed << ", held " << nHeld << "\n";
        EXPECT_GE(nFailed, 100) << "opcode " << opcode;
        EXPECT_GE(nHeld, 100) << "opcode " << opcode;
    }
    const char* const events[] = {"a context holds",
                                  "a context fails",
                                  "the focus ends outside the stream",
                                  "a token is assigned",
                                  "a mark is assigned",
                                  "AssignPtr takes back",
                                  "AssignTok takes back",
                                  "AssignTok restores a token",
                                  "a division has no result",
                                  "a fence stops",
                                  "a fence is passed",
                                  "Star has no limit",
                                  "Star is past its limit",
                                  "Star is at its limit",
                                  "Stars has no limit",
                                  "Stars is past its limit",
                                  "Stars goes round in a circle",
                                  "Stars matches empty at the end"};
    for (const char* event : events) {
        std::cout << event << ": " << totals.coverage.events[event] << "\n";
        EXPECT_GE(totals.coverage.events[event], 25) << event;
    }
    EXPECT_GE(totals.held, totals.compared / 8);
    EXPECT_GE(totals.compared, 8 * totals.tooLong);
}

TEST(Model, AgreesOnRandomPrograms) {
    const int seed = Setting("MLDS_SEED", 0);
    const int programs = Setting("MLDS_PROGRAMS", seed != 0 ? kProgramsPerWorld : kDefaultPrograms);
    Totals totals;
    for (int n = 0; n < programs / kProgramsPerWorld && totals.different < 3; ++n) {
        RunWorld(std::max(seed, 1) + n, totals);
    }
    std::cout << totals.compared << " compared, " << totals.held << " held, " << totals.tooLong
              << " too long\n";
    if (programs >= kDefaultPrograms && totals.different == 0) ExpectSeen(totals);
}

}  // namespace
}  // namespace mlds_test
