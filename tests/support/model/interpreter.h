// A model of the interpreter of rule tests: what a test answers, binds and visits, worked out on a
// layout of the container in the plainest way.
//
// It is for comparison, and shares no code with the library. It holds for well-formed programs:
// links lead to instructions that fit, variables are of the kind that their operators expect. A
// focus may come to an operator without a position: that finds nothing there and fails, but for
// pointers, which give one, and AssignPtr, which assigns none.
#ifndef MLDS_TESTS_SUPPORT_MODEL_INTERPRETER_H
#define MLDS_TESTS_SUPPORT_MODEL_INTERPRETER_H

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "support/model/layout.h"

namespace mlds_test {

using Program = unsigned char const (*)[5];

/// One report of an observer: an instruction is about to run, or has run with this result.
struct TraceStep {
    bool bAfter;
    int index;
    int stream;
    Id position;
    ScanDirectionType direction;
    std::optional<int> result;

    bool operator==(const TraceStep&) const = default;
};

/// A variable as the model sees it: the host's pointer is known by its address.
struct ModelVariable {
    bool bToken = false;
    CStreamObj** address = nullptr;
    bool bDirty = false;
    Id mark = kNone;                   // the duplicate of a mark variable
    std::optional<TokenValues> token;  // the duplicate of a token variable
};

/// What a run went through, so that a test of many programs can see that it saw everything.
struct ModelCoverage {
    std::map<int, std::pair<long, long>> outcomes;  // by opcode: how often it failed, succeeded
    std::map<std::string, long> events;
};

class ModelInterpreter {
public:
    /// The layout must live as long as the model, which enters in it what tests assign to tokens.
    ModelInterpreter(Layout& layout, CVarList& varList);

    /// What CPlexa::Test would return; reads the host's variables and changes none of them.
    /// Nothing if the test takes more than `budget` instructions.
    std::optional<bool> Test(Program program, int base, int budget);

    const std::vector<ModelVariable>& Variables() const { return m_variables; }
    /// What the host's variable at an address holds after the test.
    Id Bound(CStreamObj** address) const { return m_bound.at(address); }
    /// What an observer is told up to the end; if a division ends the test, up to that.
    const std::vector<TraceStep>& Trace() const { return m_trace; }
    /// True if a division without a result ended the test. What is pending then is not settled: it
    /// depends on how the interpreter leaves the operators that it is in.
    bool WasEnded() const { return m_bEnded; }
    ModelCoverage& Coverage() { return m_coverage; }

    /// What a result tells: the number of an operator that makes numbers, else whether it holds.
    static int AsSeen(int opcode, int result);
    /// Reads a host's variable, whatever kind of pointer it is.
    static CStreamObj* Read(CStreamObj** address);

private:
    struct Ended {};    // the test is false, nothing rescues it
    struct TooLong {};  // it takes more than its budget
    /// The instruction being executed, the stream it works in and its direction.
    struct Op {
        int index;
        int stream;
        ScanDirectionType direction;
    };

    // Reading instructions
    int Byte(int index, int i) const { return m_header[index][i]; }
    int Link(const Op& op, int i) const { return Byte(op.index, i); }
    int Constant(int index) const;

    // The course of a test
    bool RunFocusAndContexts();
    bool RunContext(int link, int stream, Id position, ScanDirectionType direction);
    void ResetVariables();
    void AssignAndClear(bool bAssign);
    int Run(int index, int stream, ScanDirectionType direction, Id& position, int& done);
    int Dispatch(int opcode, const Op& op, Id& position, int& done);
    /// Runs an operand in the stream and direction of its operator.
    int Eval(const Op& op, int link, Id& position, int& done) {
        return Run(link, op.stream, op.direction, position, done);
    }
    int EvalByte(const Op& op, int i, Id& position, int& done) {
        return Eval(op, Link(op, i), position, done);
    }
    /// True if an operand, taken as a pattern, matched.
    static bool Holds(int result) { return (result & 0xFF) != 0; }
    int Finish(const Op& op, Id w, Id& position, int& done);
    void Count(const char* event) { ++m_coverage.events[event]; }

    // Where patterns stand
    Id NextInFence(Id from, ScanDirectionType direction);
    Id NearestInFence(Id from, ScanDirectionType direction, ObjectType type);
    Id Cross(Id from, ScanDirectionType direction, int stream) const;
    Id Boundary(Id from, Id mark, ScanDirectionType direction);
    Id MatchingToken(const TokenValues& model, int selector, Id from, ScanDirectionType direction);
    bool FindLimit(const Op& op, Id& limit);

    // Variables
    ModelVariable* Variable(int v);
    Id Mark(int v);
    const TokenValues* Token(int v);

    // The operators. A pattern that matches stores its end in the position. `done` becomes 1 when
    // the sequence that it belongs to has matched to its end.
    int Plexa(const Op& op, Id& position, int& done);
    int Anchor(const Op& op, Id& position, int& done);
    int Or(const Op& op, Id& position, int& done);
    int And(const Op& op, Id& position, int& done);
    int Not(const Op& op, Id& position, int& done);
    int Adj(const Op& op, Id& position, int& done);
    int Star(const Op& op, Id& position, int& done);
    int Stars(const Op& op, Id& position, int& done);
    int EndStars(const Op& op, Id w, Id& position, int& done);
    int StarsNoBkup(const Op& op, Id& position, int& done);
    int Qmark(const Op& op, Id& position, int& done);
    int Qmarks(const Op& op, Id& position, int& done);
    int Arithmetic(int opcode, const Op& op, Id& position, int& done);
    int Field(const Op& op, Id& position);
    int Compare(int opcode, const Op& op, Id& position, int& done);
    int NameEq(const Op& op, Id& position, int& done);
    int AngleBrkt(const Op& op, Id& position, int& done);
    int Tok(const Op& op, Id& position, int& done);
    int Ptr(const Op& op, Id& position);
    int ParentPtr(const Op& op, Id& position, int& done);
    int AssignPtr(const Op& op, Id& position, int& done);
    int AssignTok(const Op& op, Id& position, int& done);
    int Context(const Op& op, ScanDirectionType step, Id& position, int& done);
    int Move(const Op& op, ScanDirectionType step, Id& position, int& done);
    int TimeMove(const Op& op, ScanDirectionType step, Id& position, int& done);
    int AdjacencyTest(const Op& op, Id& position, int& done);
    int SyncTest(const Op& op, Id& position, int& done);

    Layout& m_layout;
    std::vector<ModelVariable> m_variables;
    std::map<CStreamObj**, Id> m_bound;
    Program m_header = nullptr;
    Id m_advanceMark = kNone;
    std::vector<std::pair<Id, int>> m_open;  // where Stars are evaluating their continuations
    int m_budget = 0;
    int m_depth = 0;
    bool m_bEnded = false;
    std::vector<TraceStep> m_trace;
    ModelCoverage m_coverage;
};

}  // namespace mlds_test

#endif
