// Random test programs.
#include <algorithm>
#include <limits>

#include "support/model/randomworld.h"

namespace mlds_test {

namespace {

class Generator {
public:
    Generator(Random& random, RandomWorld& world) : m_random(random), m_world(world) {
        for (int i = 1; i <= 255; ++i) m_free.push_back(i);
        // Mostly near the header, where the second byte of a focus may be 1; or all over the place.
        if (random.OneIn(3)) {
            for (int i = 254; i > 0; --i) std::swap(m_free[At(i)], m_free[At(random.Below(i + 1))]);
        }
        std::reverse(m_free.begin(), m_free.end());
        for (auto& instruction : m_code) instruction.fill(Noise());
    }

    RandomProgram Make() {
        const int focus = Focus();
        const int left = m_random.OneIn(2) ? Pattern(3) : 0;
        const int right = m_random.OneIn(2) ? Pattern(3) : 0;
        const int own = m_world.StreamOfMark(m_start);
        const int other = m_random.Below(m_world.plexa.GetNumStreams());
        const int stream = Constant(m_random.OneIn(8) || own < 0 ? other : own);
        Put(0, kAny, stream, left, right, focus);
        m_used.push_back(0);
        std::sort(m_used.begin(), m_used.end());

        RandomProgram program;
        program.base = m_random.Below(6);
        for (int i = 0; i < program.base; ++i) program.code.push_back(m_code[255]);
        program.code.insert(program.code.end(), m_code.begin(), m_code.begin() + m_used.back() + 1);
        program.used = m_used;
        return program;
    }

private:
    static std::size_t At(int i) { return static_cast<std::size_t>(i); }
    unsigned char Noise() { return static_cast<unsigned char>(m_random.Below(256)); }
    // A byte that nothing reads. It is filled in later, as the order in which a compiler evaluates
    // arguments is its own: an argument list draws one number at most.
    static constexpr int kAny = -1;
    int Streams() { return m_world.plexa.GetNumStreams(); }

    int NewIndex() {
        const int index = m_free.back();
        m_free.pop_back();
        m_used.push_back(index);
        return index;
    }
    int Put(int index, int opcode, int b1, int b2, int b3, int b4) {
        const int bytes[] = {opcode, b1, b2, b3, b4};
        for (int i = 0; i < 5; ++i) {
            m_code[At(index)][At(i)] =
                bytes[i] == kAny ? Noise() : static_cast<unsigned char>(bytes[i]);
        }
        return index;
    }
    int Emit(int opcode, int b1, int b2, int b3, int b4) {
        return Put(NewIndex(), opcode, b1, b2, b3, b4);
    }
    int Number(int opcode, int value) {
        return Emit(opcode, value >> 24 & 255, value >> 16 & 255, value >> 8 & 255, value & 255);
    }
    int Constant(int value) {
        const int opcodes[] = {2, 22, 24};
        return Number(opcodes[m_random.Below(3)], value);
    }

    // Variables. Those that are only looked up may be out of range.
    int MarkVariable() { return m_random.Below(m_world.markVariables); }
    int TokenVariable() { return m_world.markVariables + m_random.Below(m_world.tokenVariables); }
    int Unknown() { return m_random.OneIn(2) ? 49 : 200; }
    int Selector() { return m_random.OneIn(3) ? 255 : m_random.OneIn(12) ? 7 : m_random.Below(3); }

    int Ptr() {
        const int v = m_random.OneIn(2) ? m_start : m_world.BoundMark(m_random);
        return Number(34, m_random.OneIn(20) ? Unknown() : v);
    }
    int Limit() {
        if (m_random.OneIn(2)) return 0;
        const int which = m_random.Below(8);
        const int v = which == 0   ? -1
                      : which == 1 ? TokenVariable()
                      : which == 2 ? Unknown()
                      : which == 3 ? MarkVariable()
                                   : m_world.BoundMark(m_random);
        return Emit(kAny, kAny, Constant(v), kAny, kAny);
    }

    int Value(int depth) {
        const int which = depth > 0 ? m_random.Below(20) : m_random.Below(8);
        if (which < 4)
            return Number(23, m_random.OneIn(15) ? 4 * m_random.Below(2) - 1 : m_random.Below(3));
        if (which < 8) {
            const int odd[] = {std::numeric_limits<int>::min(), std::numeric_limits<int>::max(),
                               0x10000, 0x100};
            return Constant(m_random.OneIn(12) ? odd[m_random.Below(4)] : m_random.Between(-1, 3));
        }
        if (which < 10) return Emit(16, kAny, Value(depth - 1), kAny, kAny);
        if (which < 18) {
            const int opcode = which == 17 ? 18 : which < 14 ? 17 : 19;
            const int left = Value(depth - 1);
            return Emit(opcode, kAny, left, Value(depth - 1), kAny);
        }
        if (which == 18) return Comparison(depth - 1);
        const int body = Value(depth - 1);
        return Emit(3, body, kAny, m_random.Below(2), kAny);
    }
    int Stream() {
        const int odd[] = {Streams(), 50, 51, -1};
        if (m_random.OneIn(12)) return Constant(odd[m_random.Below(4)]);
        return m_random.OneIn(8) ? Value(2) : Constant(m_random.Below(Streams()));
    }
    int Comparison(int depth) {
        const int left = Value(m_random.OneIn(3) ? depth : 0);
        const int right = Value(m_random.OneIn(3) ? depth : 0);
        return Emit(m_random.Between(26, 31), kAny, left, right, kAny);
    }

    // What comes next in the sequence: nothing, something new or known, or a repetition again.
    int Continuation(int depth) {
        if (!m_repetitions.empty() && m_random.OneIn(4)) {
            return m_repetitions[At(m_random.Below(static_cast<int>(m_repetitions.size())))];
        }
        if (depth <= 0 || m_random.OneIn(3)) return 0;
        return Pattern(depth - 1);
    }
    int Optional(int depth) { return m_random.OneIn(10) ? 0 : Pattern(depth); }

    int Pattern(int depth) {
        if (!m_patterns.empty() && (m_used.size() > 150 || m_random.OneIn(15))) {
            return m_patterns[At(m_random.Below(static_cast<int>(m_patterns.size())))];
        }
        const int index = depth > 0 && !m_random.OneIn(4) ? Inner(depth - 1) : Leaf(depth - 1);
        m_patterns.push_back(index);
        return index;
    }

    // Patterns that need no others, with what follows them.
    int Leaf(int depth) {
        const int next = Continuation(depth);
        switch (m_random.Below(15)) {
            case 0: return Ptr();
            case 1: {
                const int v = m_random.OneIn(15) ? Unknown() : TokenVariable();
                return Emit(33, v, Selector(), kAny, next);
            }
            case 2: {
                const int v = m_random.OneIn(3) ? m_world.BoundMark(m_random) : TokenVariable();
                const int variable = Constant(m_random.OneIn(15) ? Unknown() : v);
                const int opcode = m_random.Between(51, 52);
                return Emit(opcode, kAny, variable, Selector(), next);
            }
            case 3: return Emit(35, kAny, 0, MarkVariable(), next);
            case 4: return Emit(36, kAny, 0, TokenVariable(), next);
            case 5: {
                const int v = TokenVariable();  // twice, so that there is something to restore
                return Emit(36, kAny, 0, v, Emit(36, kAny, 0, v, next));
            }
            case 6: {
                const int left = Value(1);
                return Emit(38, kAny, left, Value(1), next);
            }
            case 7:
            case 8: return Emit(32, kAny, 0, kAny, next);
            case 9:
            case 10: return Emit(32, kAny, Comparison(1), kAny, next);
            case 11: return Emit(49, kAny, kAny, kAny, next);
            case 12: return Emit(50, kAny, m_random.OneIn(15) ? 0 : Stream(), kAny, next);
            case 13: return m_random.OneIn(4) ? Value(1) : Comparison(1);
            default: return Comparison(2);
        }
    }

    int Inner(int depth) {
        const int which = m_random.Below(28);
        if (which < 5) return Repetition(which == 4 ? 10 : 8 + which % 2, depth);
        if (which < 7) {
            const int operand = Pattern(depth);
            return Emit(14 + which % 2, kAny, operand, kAny, Continuation(depth));
        }
        if (which < 11) {
            const int stream = m_random.OneIn(20) ? 0 : Stream();
            const int pattern = Optional(depth);
            return Emit(1, stream, kAny, pattern, Continuation(depth));
        }
        if (which < 14) {
            const int body = Pattern(depth);
            return Emit(3, body, kAny, m_random.OneIn(3) ? kAny : 0, kAny);
        }
        if (which < 20) {
            const int left = Optional(depth);
            const int right = Optional(depth);
            const int opcode = which == 14 ? 4 : which == 15 ? 5 : 7;
            return Emit(opcode, kAny, left, right, Continuation(depth));
        }
        if (which < 22) {
            const int operand = Pattern(depth);
            return Emit(6, kAny, operand, kAny, Continuation(depth));
        }
        if (which < 24) {
            const int pattern = Pattern(depth);
            return Emit(44 + which % 2, kAny, pattern, kAny, kAny);
        }
        const int opcode = 40 + which % 4;
        const int stream = opcode > 41 && m_random.OneIn(3) ? 0 : Stream();
        const int pattern = Pattern(depth);
        return Emit(opcode, kAny, stream, pattern, kAny);
    }

    // A condition that holds where no token can be read, and consumes nothing; and back to its
    // repetition with an anchor here, so that behind a fence it holds once.
    int Blocked() {
        const int field = Number(23, 0);
        return Emit(26, kAny, field, Constant(-1), kAny);
    }
    int Again(int repetition) {
        const int anchor = Emit(3, Emit(4, kAny, 0, 0, kAny), kAny, 0, kAny);
        return Emit(7, kAny, anchor, anchor, repetition);
    }

    // Its operand and its continuation may lead back to it.
    int Repetition(int opcode, int depth) {
        const int index = NewIndex();
        if (opcode != 10) m_repetitions.push_back(index);
        const bool bOnce = opcode == 9 && m_random.OneIn(6);
        const int operand = bOnce ? Blocked() : Pattern(depth);
        const int limit = opcode == 10 ? kAny : Limit();
        const int next = bOnce ? Again(index) : Continuation(depth);
        if (opcode != 10) m_repetitions.pop_back();
        return Put(index, opcode, kAny, operand, limit, next);
    }

    // A focus that finds its first position, mostly, in whatever direction it runs.
    int Focus() {
        m_start = m_world.BoundMark(m_random);
        const int start = Number(34, m_start);
        if (m_random.OneIn(12)) return m_random.OneIn(2) ? start : Pattern(4);
        int both = m_random.OneIn(3) ? Emit(3, start, kAny, 0, kAny) : start;
        // Whichever of the two comes first sets the position.
        const int opcode = m_random.OneIn(5) ? 4 : 7;
        both = Emit(opcode, kAny, start, both, Pattern(5));
        if (m_random.OneIn(4)) return both;
        const int direction = m_random.OneIn(2) ? 1 : kAny;
        return Emit(3, both, direction, m_random.OneIn(3) ? kAny : 0, kAny);
    }

    Random& m_random;
    RandomWorld& m_world;
    std::array<std::array<unsigned char, 5>, 256> m_code;
    std::vector<int> m_free;
    std::vector<int> m_used;
    std::vector<int> m_patterns;     // that are complete
    std::vector<int> m_repetitions;  // that are being made
    int m_start = 0;                 // the variable that gives the first position
};

}  // namespace

RandomProgram MakeProgram(Random& random, RandomWorld& world) {
    return Generator(random, world).Make();
}

std::string RandomProgram::List() const {
    std::string text;
    for (const int index : used) {
        text += std::to_string(index) + ":";
        for (const unsigned char byte : code[static_cast<std::size_t>(base + index)]) {
            text += " " + std::to_string(byte);
        }
        text += "\n";
    }
    return text;
}

}  // namespace mlds_test
