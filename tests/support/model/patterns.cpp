// A model of the interpreter of rule tests: logic, sequence, repetition, anchors.
#include <algorithm>

#include "support/model/interpreter.h"

namespace mlds_test {

// Executes its body in its own place; then the position, moved or not, is where fences may be
// passed.
int ModelInterpreter::Anchor(const Op& op, Id& position, int& done) {
    const int result = EvalByte(op, 1, position, done);
    m_advanceMark = Link(op, 3) == 0 ? position : kNone;
    return result;
}

// The two operands of Or, And and Adj, as the scan meets them: a leftward one the right one first.
int ModelInterpreter::Or(const Op& op, Id& position, int& done) {
    const bool bRight = op.direction == sdRight;
    const int first = Link(op, bRight ? 2 : 3);
    const int second = Link(op, bRight ? 3 : 2);
    Id w = position;
    if (first != 0) {
        const int result = Eval(op, first, w, done);
        if (Holds(result)) {
            position = w;
            return result;
        }
    }
    if (second == 0) return 1;  // an alternative that is missing holds
    w = position;
    const int result = Eval(op, second, w, done);
    if (Holds(result)) position = w;
    return result;
}

// Both from the same place; the end is that of the second.
int ModelInterpreter::And(const Op& op, Id& position, int& done) {
    const bool bRight = op.direction == sdRight;
    const int first = Link(op, bRight ? 2 : 3);
    const int second = Link(op, bRight ? 3 : 2);
    Id w = position;
    if (first != 0 && !Holds(Eval(op, first, w, done))) return 0;
    w = position;
    if (second != 0 && !Holds(Eval(op, second, w, done))) return 0;
    position = w;
    return 1;
}

int ModelInterpreter::Not(const Op& op, Id& position, int& done) {
    Id w = position;
    int ownDone = 0;  // an end inside what must not match ends nothing outside
    if (Holds(EvalByte(op, 2, w, ownDone))) return 0;
    if (Link(op, 4) != 0) w = position;
    // Without a continuation the position goes where the failed operand left it: a value that was
    // read has moved it.
    return Finish(op, w, position, done);
}

int ModelInterpreter::Adj(const Op& op, Id& position, int& done) {
    const bool bRight = op.direction == sdRight;
    const int first = Link(op, bRight ? 2 : 3);
    const int second = Link(op, bRight ? 3 : 2);
    Id w = position;
    if (first != 0 && !Holds(Eval(op, first, w, done))) return 0;
    if (done == 1) {
        position = w;
        return 1;
    }
    const int result = second != 0 ? Eval(op, second, w, done) : 1;
    if (done == 1) {
        if (Holds(result)) position = w;
        return result;
    }
    if (!Holds(result)) return 0;
    return Finish(op, w, position, done);
}

// The mark where a repetition ends: that of the limit variable, brought into the stream, or the
// last one before the end of the stream. False if there is a variable and it gives none.
bool ModelInterpreter::FindLimit(const Op& op, Id& limit) {
    const int link = Link(op, 3);
    const int v = link != 0 ? Constant(Byte(link, 2)) : -1;
    if (v < 0) {
        limit = op.direction == sdRight ? m_layout.Next(m_layout.Last(op.stream), sdLeft)
                                        : m_layout.Next(m_layout.First(op.stream), sdRight);
        return true;
    }
    limit = Mark(v);  // none, too, for a token variable
    if (limit == kNone) return false;
    if (m_layout[limit].stream != op.stream) {
        limit = m_layout.NearestMark(op.stream, limit, Opposite(op.direction));
    }
    return limit != kNone;
}

// As few times as possible. The operand is tried once; its continuation leads back here for more.
int ModelInterpreter::Star(const Op& op, Id& position, int& done) {
    Id limit = kNone;
    if (!FindLimit(op, limit)) {
        Count("Star has no limit");
        return 0;
    }
    if (m_layout.Beyond(position, limit, op.direction)) {
        Count("Star is past its limit");
        return 0;
    }
    if (Link(op, 4) == 0) return 1;  // no times, and the sequence is not said to end
    Id w = position;
    if (const int result = EvalByte(op, 4, w, done); Holds(result)) {
        position = w;
        return 1;
    }
    // Without a position there is nothing to repeat, either.
    if (position == kNone || m_layout.Synchronous(position, limit)) {
        Count("Star is at its limit");
        return 0;
    }
    w = position;
    const int result = EvalByte(op, 2, w, done);
    if (Holds(result)) position = w;
    return result;
}

// As many times as possible, by running itself again behind each match.
int ModelInterpreter::Stars(const Op& op, Id& position, int& done) {
    Id limit = kNone;
    if (!FindLimit(op, limit)) {
        Count("Stars has no limit");
        return 1;  // unlike Star
    }
    if (m_layout.Beyond(position, limit, op.direction)) {
        Count("Stars is past its limit");
        return 0;
    }
    Id w = position;
    int result = EvalByte(op, 2, w, done);
    if (done == 1) {
        if (Holds(result)) position = w;
        return result;
    }
    if (!Holds(result)) return EndStars(op, w, position, done);
    if (w != position) {
        result = Run(op.index, op.stream, op.direction, w, done);
        if (Holds(result)) position = w;
        return result;
    }
    if (Link(op, 4) == 0) {
        Count("Stars matches empty at the end");
        done = 1;
        return 0;
    }
    m_open.emplace_back(position, op.index);
    result = EvalByte(op, 4, w, done);
    m_open.pop_back();
    if (Holds(result)) position = w;
    return result;
}

// No more repetitions; `w` is where the failed operand left it.
int ModelInterpreter::EndStars(const Op& op, Id w, Id& position, int& done) {
    const bool bContinues = Link(op, 4) != 0;
    const auto known = m_open.begin() + std::min<std::ptrdiff_t>(std::ssize(m_open), 100);
    if (std::find(m_open.begin(), known, std::pair(position, op.index)) != known) {
        Count("Stars goes round in a circle");
        if (!bContinues) done = 1;
        position = w;
        return 1;
    }
    if (!bContinues) {
        done = 1;
        return 1;
    }
    int ownDone = 0;
    m_open.emplace_back(position, op.index);
    const int result = EvalByte(op, 4, w, ownDone);
    m_open.pop_back();
    if (Holds(result)) {
        done = ownDone;
        position = w;
    }
    return result;
}

int ModelInterpreter::StarsNoBkup(const Op& op, Id& position, int& done) {
    Id last = position;
    int ownDone = 0;
    for (Id w = position; Holds(EvalByte(op, 2, w, ownDone)); last = w) {
        if (w == last) break;  // what does not move counts as failed, or it would go on for ever
    }
    if (Link(op, 4) == 0) {
        done = 1;
        return 0;  // at the end of a pattern it never holds
    }
    return Finish(op, last, position, done);
}

// Without the operand first.
int ModelInterpreter::Qmark(const Op& op, Id& position, int& done) {
    if (Link(op, 4) == 0) {
        done = 1;
        return 1;
    }
    Id w = position;
    if (const int result = EvalByte(op, 4, w, done); Holds(result)) {
        position = w;
        return 1;
    }
    w = position;
    if (!Holds(EvalByte(op, 2, w, done))) return 0;
    if (done != 0) {
        position = w;
        return 1;
    }
    return Finish(op, w, position, done);
}

// With the operand first.
int ModelInterpreter::Qmarks(const Op& op, Id& position, int& done) {
    Id w = position;
    if (Holds(EvalByte(op, 2, w, done))) {
        if (done != 0 && Link(op, 4) != 0) {
            position = w;
            return 1;
        }
        if (const int result = Finish(op, w, position, done); Holds(result)) return 1;
    }
    return Finish(op, position, position, done);
}

}  // namespace mlds_test
