// A model of the interpreter of rule tests: values, variables, movement.
#include <limits>

#include "support/model/interpreter.h"

namespace mlds_test {

Id ModelInterpreter::NextInFence(Id from, ScanDirectionType direction) {
    if (from == kNone) return kNone;
    if (m_layout.IsMark(from) && m_layout.IsFenced(from)) {
        Count(m_layout.MayLeave(from, m_advanceMark) ? "a fence is passed" : "a fence stops");
    }
    return m_layout.NextInFence(from, direction, m_advanceMark);
}

Id ModelInterpreter::NearestInFence(Id from, ScanDirectionType direction, ObjectType type) {
    if (from == kNone) return kNone;
    if (m_layout.IsMark(from) && m_layout.IsFenced(from)) {
        Count(m_layout.MayLeave(from, m_advanceMark) ? "a fence is passed" : "a fence stops");
    }
    return m_layout.NearestInFence(from, direction, type, m_advanceMark);
}

int ModelInterpreter::Arithmetic(int opcode, const Op& op, Id& position, int& done) {
    // The left one first in either direction; what it reads, it takes from the right one.
    const auto left = static_cast<std::uint32_t>(EvalByte(op, 2, position, done));
    if (opcode == 16) return static_cast<int>(0 - left);
    const auto right = static_cast<std::uint32_t>(EvalByte(op, 3, position, done));
    if (opcode == 17) return static_cast<int>(left * right);
    if (opcode == 19) return static_cast<int>(left + right);
    const auto a = static_cast<int>(left);
    const auto b = static_cast<int>(right);
    if (b == 0 || (b == -1 && a == std::numeric_limits<int>::min())) {
        Count("a division has no result");
        m_bEnded = true;
        throw Ended();
    }
    return a / b;
}

// The value of the next token, which is consumed; -1, and nothing consumed, if there is none.
int ModelInterpreter::Field(const Op& op, Id& position) {
    const Id token = NearestInFence(position, op.direction, otToken);
    if (token == kNone) return -1;
    position = NextInFence(token, op.direction);
    return m_layout[token].token.At(Constant(op.index));
}

// Eq alone leaves the position where it was; after the others it is where the values end, whether
// they hold or not.
int ModelInterpreter::Compare(int opcode, const Op& op, Id& position, int& done) {
    Id w = position;
    Id& p = opcode == 26 ? w : position;
    const int left = EvalByte(op, 2, p, done);
    const int right = EvalByte(op, 3, p, done);
    switch (opcode) {
        case 26: return left == right;
        case 27: return left != right;
        case 28: return left < right;
        case 29: return left <= right;
        case 30: return left > right;
        default: return left >= right;
    }
}

int ModelInterpreter::NameEq(const Op& op, Id& position, int& done) {
    Id w = position;
    const int left = EvalByte(op, 2, w, done);
    const int right = EvalByte(op, 3, w, done);
    return left == right ? Finish(op, w, position, done) : 0;
}

// One token that satisfies a condition, which starts in front of it.
int ModelInterpreter::AngleBrkt(const Op& op, Id& position, int& done) {
    const Id token = NearestInFence(position, op.direction, otToken);
    if (token == kNone) return 0;
    const Id beyond = NearestInFence(token, op.direction, otSyncMark);
    if (Link(op, 2) != 0) {
        Id w = position;
        int ownDone = 0;
        if (!Holds(EvalByte(op, 2, w, ownDone))) return 0;
    }
    return Finish(op, beyond, position, done);
}

// The first mark of the run at the position that is synchronous with the given one. A test that
// has no position yet begins there, in whatever stream.
Id ModelInterpreter::Boundary(Id from, Id mark, ScanDirectionType direction) {
    if (from == kNone) return mark;
    for (Id k = from; m_layout.IsMark(k); k = NextInFence(k, direction)) {
        if (m_layout.Synchronous(k, mark)) return k;
    }
    return kNone;
}

// The next token, if it agrees with a variable's in one field, or in all.
Id ModelInterpreter::MatchingToken(const TokenValues& model, int selector, Id from,
                                   ScanDirectionType direction) {
    const Id token = NearestInFence(from, direction, otToken);
    if (token == kNone) return kNone;
    const TokenValues& values = m_layout[token].token;
    const bool bWhole = selector == 255;
    const bool bEqual = bWhole ? model.Equals(values) : model.At(selector) == values.At(selector);
    return bEqual ? token : kNone;
}

int ModelInterpreter::Ptr(const Op& op, Id& position) {
    const Id mark = Mark(Constant(op.index));
    if (mark == kNone) return 0;
    const Id found = Boundary(position, mark, op.direction);
    if (found == kNone) return 0;
    position = found;
    return 1;
}

int ModelInterpreter::ParentPtr(const Op& op, Id& position, int& done) {
    const int v = Constant(Link(op, 2));
    const ModelVariable* pVariable = Variable(v);
    Id w = kNone;
    if (pVariable != nullptr && pVariable->bToken) {
        const TokenValues* pToken = Token(v);
        if (pToken == nullptr) return 0;
        const Id token = MatchingToken(*pToken, Link(op, 3), position, op.direction);
        if (token == kNone) return 0;
        w = NearestInFence(token, op.direction, otSyncMark);
    } else {
        const Id mark = Mark(v);
        if (mark == kNone) return 0;
        w = Boundary(position, mark, op.direction);
    }
    return w != kNone ? Finish(op, w, position, done) : 0;
}

int ModelInterpreter::Tok(const Op& op, Id& position, int& done) {
    const TokenValues* pToken = Token(Link(op, 1));
    if (pToken == nullptr) return 0;
    const Id token = MatchingToken(*pToken, Link(op, 2), position, op.direction);
    if (token == kNone) return 0;
    // At the end of a sequence the position stays in front of the token, unlike ParentPtr's.
    if (Link(op, 4) == 0) return Finish(op, position, position, done);
    return Finish(op, NearestInFence(token, op.direction, otSyncMark), position, done);
}

int ModelInterpreter::AssignPtr(const Op& op, Id& position, int& done) {
    ModelVariable& variable = *Variable(Link(op, 2) << 8 | Link(op, 3));
    const Id old = variable.mark;
    variable.mark = position;
    variable.bDirty = true;
    const int result = Finish(op, position, position, done);
    if (!Holds(result)) {
        // The old value is back, but counts as assigned.
        Count("AssignPtr takes back");
        variable.mark = old;
    }
    return result;
}

int ModelInterpreter::AssignTok(const Op& op, Id& position, int& done) {
    if (position == kNone) return 0;
    // In either direction the token on the left. Only a leftward scan minds fences.
    const Id token = op.direction == sdRight ? m_layout.Nearest(position, sdLeft, otToken)
                                             : NearestInFence(position, sdLeft, otToken);
    if (token == kNone) return 0;
    ModelVariable& variable = *Variable(Link(op, 2) << 8 | Link(op, 3));
    const std::optional<TokenValues> backup = variable.token;
    if (!variable.bDirty) {
        variable.token = m_layout[token].token;
        variable.bDirty = true;
    } else {
        variable.token->CopyFrom(m_layout[token].token);
    }
    const int result = Finish(op, position, position, done);
    if (Holds(result)) return result;
    if (backup) {
        Count("AssignTok restores a token");
        variable.token->CopyFrom(*backup);
    } else {
        Count("AssignTok takes back");
        variable.token.reset();
        variable.bDirty = false;
    }
    return result;
}

// The mark of another stream at a place: of the run of marks there, the first that has one.
Id ModelInterpreter::Cross(Id from, ScanDirectionType direction, int stream) const {
    for (Id k = from; m_layout.IsMark(k); k = m_layout.Next(k, direction)) {
        const Id mark = m_layout.Counterpart(k, stream);
        if (mark != kNone) return mark;
    }
    return kNone;
}

// A pattern in another stream, and back.
int ModelInterpreter::Plexa(const Op& op, Id& position, int& done) {
    if (Link(op, 1) == 0) return 0;
    Id w = position;
    const int target = EvalByte(op, 1, w, done);
    w = Cross(position, op.direction, target);
    if (w == kNone || Link(op, 3) == 0) return 0;
    int ownDone = 0;
    if (!Holds(Run(Link(op, 3), target, op.direction, w, ownDone))) return 0;
    w = Cross(w, op.direction, op.stream);
    return w != kNone ? Finish(op, w, position, done) : 0;
}

int ModelInterpreter::Context(const Op& op, ScanDirectionType step, Id& position, int& done) {
    Id w = position;
    const int target = EvalByte(op, 2, w, done);
    w = position;
    EvalByte(op, 3, w, done);  // only where it leads to matters, not whether it holds
    const Id found = m_layout.NearestMark(target, w, step);
    if (found == kNone) return 0;
    position = found;
    return 1;
}

int ModelInterpreter::Move(const Op& op, ScanDirectionType step, Id& position, int& done) {
    Id w = position;
    // A stream that is read from a token moves the position of the pattern.
    const int target = Link(op, 2) != 0 ? EvalByte(op, 2, w, done) : op.stream;
    if (!Holds(EvalByte(op, 3, w, done))) return 0;
    w = m_layout.EndOfRun(target, w, step);
    if (w == kNone) return 0;
    position = w;
    return 1;
}

int ModelInterpreter::TimeMove(const Op& op, ScanDirectionType step, Id& position, int& done) {
    Id w = position;
    if (!Holds(EvalByte(op, 2, w, done))) return 0;
    if (m_layout.TimeStream() < 0) return 0;
    if (w == kNone) return 0;
    w = m_layout.Counterpart(w, m_layout.TimeStream());
    if (w != kNone) w = NextInFence(w, step);
    if (!m_layout.IsMark(w)) return 0;
    position = w;
    return 1;
}

int ModelInterpreter::AdjacencyTest(const Op& op, Id& position, int& done) {
    const Id next = NextInFence(position, op.direction);
    return m_layout.IsMark(next) ? Finish(op, next, position, done) : 0;
}

int ModelInterpreter::SyncTest(const Op& op, Id& position, int& done) {
    if (Link(op, 2) == 0) return 0;
    Id w = position;
    const int stream = EvalByte(op, 2, w, done);
    for (w = position; m_layout.IsMark(w); w = m_layout.Next(w, op.direction)) {
        if (m_layout.Counterpart(w, stream) != kNone) return Finish(op, w, position, done);
    }
    if (Link(op, 4) == 0) done = 1;  // the sequence ends here, even so
    return 0;
}

}  // namespace mlds_test
