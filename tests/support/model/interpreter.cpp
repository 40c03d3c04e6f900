// A model of the interpreter of rule tests: the course of a test, its variables, dispatch.
#include "support/model/interpreter.h"

#include <cstring>
#include <stdexcept>

namespace mlds_test {

CStreamObj* ModelInterpreter::Read(CStreamObj** address) {
    CStreamObj* p = nullptr;
    std::memcpy(&p, address, sizeof p);  // the host's variable is a CSyncMark* or a CToken*
    return p;
}

ModelInterpreter::ModelInterpreter(Layout& layout, CVarList& varList) : m_layout(layout) {
    for (int i = 0; i < varList.GetNumVars(); ++i) {
        m_variables.emplace_back();
        m_variables.back().bToken = varList.GetVarType(i) == vtTokenPtr;
        m_variables.back().address = varList.GetVarPtr(i);
    }
}

std::optional<bool> ModelInterpreter::Test(Program program, int base, int budget) {
    m_header = program + base;
    m_budget = budget;
    m_depth = 0;
    m_bEnded = false;
    m_open.clear();
    m_trace.clear();
    ResetVariables();
    std::optional<bool> holds;
    try {
        holds = RunFocusAndContexts();
    } catch (TooLong) {
    }
    m_advanceMark = kNone;
    return holds;
}

bool ModelInterpreter::RunFocusAndContexts() {
    const int stream = Constant(Byte(0, 1));
    const int focus = Byte(0, 4);
    // The second byte of the focus is its direction, even where it is a link as well.
    const ScanDirectionType direction = Byte(focus, 2) == 1 ? sdLeft : sdRight;
    Id position = kNone;
    try {
        int done = 0;
        // A focus that fails leaves the variables as they are, half assigned.
        if (!Holds(Run(focus, stream, direction, position, done))) return false;
    } catch (Ended) {
        return false;
    }
    const Id end = position == kNone ? kNone : m_layout.Counterpart(position, stream);
    if (end == kNone) {
        Count("the focus ends outside the stream");
        return false;
    }
    bool bHolds = false;
    try {
        // Both are evaluated, whatever the first one gives.
        const ScanDirectionType other = Opposite(direction);
        const bool bFirst =
            RunContext(Byte(0, direction == sdLeft ? 2 : 3), stream, end, direction);
        const bool bSecond = RunContext(Byte(0, direction == sdLeft ? 3 : 2), stream, end, other);
        bHolds = bFirst && bSecond;
    } catch (Ended) {
    }
    AssignAndClear(bHolds);
    return bHolds;
}

bool ModelInterpreter::RunContext(int link, int stream, Id position, ScanDirectionType direction) {
    int done = 0;
    if (link == 0) return true;
    const bool bHolds = Holds(Run(link, stream, direction, position, done));
    Count(bHolds ? "a context holds" : "a context fails");
    return bHolds;
}

void ModelInterpreter::ResetVariables() {
    for (ModelVariable& variable : m_variables) {
        const Id bound = m_bound[variable.address] = m_layout.IdOf(Read(variable.address));
        variable.bDirty = false;
        variable.mark = variable.bToken ? kNone : bound;
        variable.token.reset();
    }
}

// Duplicates go, dirty flags stay.
void ModelInterpreter::AssignAndClear(bool bAssign) {
    for (ModelVariable& variable : m_variables) {
        if (!variable.bDirty) continue;
        Id& bound = m_bound[variable.address];
        if (bAssign && variable.bToken && variable.token && bound != kNone) {
            m_layout[bound].token.CopyFrom(*variable.token);
            Count("a token is assigned");
        }
        if (bAssign && !variable.bToken) {
            bound = variable.mark;
            Count("a mark is assigned");
        }
        variable.token.reset();
        variable.mark = kNone;
    }
}

ModelVariable* ModelInterpreter::Variable(int v) {
    if (v < 0 || v >= static_cast<int>(m_variables.size())) return nullptr;
    return &m_variables[static_cast<std::size_t>(v)];
}

Id ModelInterpreter::Mark(int v) {
    ModelVariable* pVariable = Variable(v);
    return pVariable != nullptr ? pVariable->mark : kNone;
}

// The duplicate if there is one, else the host's token.
const TokenValues* ModelInterpreter::Token(int v) {
    ModelVariable* pVariable = Variable(v);
    if (pVariable == nullptr) return nullptr;
    if (pVariable->token) return &*pVariable->token;
    const Id bound = m_bound.at(pVariable->address);
    return bound != kNone ? &m_layout[bound].token : nullptr;
}

int ModelInterpreter::Constant(int index) const {
    std::uint32_t value = 0;
    for (int i = 1; i <= 4; ++i) value = value << 8 | static_cast<std::uint32_t>(Byte(index, i));
    return static_cast<int>(value);
}

int ModelInterpreter::AsSeen(int opcode, int result) {
    const bool bValue = opcode == 2 || (opcode >= 16 && opcode <= 24);
    return bValue ? result : Holds(result);
}

int ModelInterpreter::Run(int index, int stream, ScanDirectionType direction, Id& position,
                          int& done) {
    if (index == 0) throw std::logic_error("an operand is missing");
    if (--m_budget < 0 || m_depth > 1000) throw TooLong();
    const int opcode = Byte(index, 0);
    m_trace.push_back({false, index, stream, position, direction, std::nullopt});
    ++m_depth;
    const int result = Dispatch(opcode, {index, stream, direction}, position, done);
    --m_depth;
    m_trace.push_back({true, index, stream, position, direction, AsSeen(opcode, result)});
    auto& [nFailed, nHeld] = m_coverage.outcomes[opcode];
    ++(Holds(result) ? nHeld : nFailed);
    return result;
}

int ModelInterpreter::Dispatch(int opcode, const Op& op, Id& position, int& done) {
    switch (opcode) {
        case 1: return Plexa(op, position, done);
        case 3: return Anchor(op, position, done);
        case 4: return Or(op, position, done);
        case 5: return And(op, position, done);
        case 6: return Not(op, position, done);
        case 7: return Adj(op, position, done);
        case 8: return Star(op, position, done);
        case 9: return Stars(op, position, done);
        case 10: return StarsNoBkup(op, position, done);
        case 14: return Qmark(op, position, done);
        case 15: return Qmarks(op, position, done);
        case 16:
        case 17:
        case 18:
        case 19: return Arithmetic(opcode, op, position, done);
        case 2:
        case 22:
        case 24: return Constant(op.index);
        case 23: return Field(op, position);
        case 26:
        case 27:
        case 28:
        case 29:
        case 30:
        case 31: return Compare(opcode, op, position, done);
        case 32: return AngleBrkt(op, position, done);
        case 33: return Tok(op, position, done);
        case 34: return Ptr(op, position);
        case 35: return AssignPtr(op, position, done);
        case 36: return AssignTok(op, position, done);
        case 38: return NameEq(op, position, done);
        case 40: return Context(op, sdRight, position, done);
        case 41: return Context(op, sdLeft, position, done);
        case 42: return Move(op, sdRight, position, done);
        case 43: return Move(op, sdLeft, position, done);
        case 44: return TimeMove(op, sdRight, position, done);
        case 45: return TimeMove(op, sdLeft, position, done);
        case 49: return AdjacencyTest(op, position, done);
        case 50: return SyncTest(op, position, done);
        case 51:
        case 52: return ParentPtr(op, position, done);
        default: throw std::logic_error("an opcode without an operator");
    }
}

// How most patterns end: with the continuation (byte 4) from where the match ends, or, without
// one, with the word that the sequence has matched to its end.
int ModelInterpreter::Finish(const Op& op, Id w, Id& position, int& done) {
    int result = 1;
    if (Link(op, 4) != 0) {
        result = EvalByte(op, 4, w, done);
    } else {
        done = 1;
    }
    if (Holds(result)) position = w;
    return result;
}

}  // namespace mlds_test
