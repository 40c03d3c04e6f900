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
        Put(0, Noise(), stream, left, right, focus);
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
    int Streams() { return m_world.plexa.GetNumStreams(); }

    int NewIndex() {
        const int index = m_free.back();
        m_free.pop_back();
        m_used.push_back(index);
        return index;
    }
    int Put(int index, int opcode, int b1, int b2, int b3, int b4) {
        const int bytes[] = {opcode, b1, b2, b3, b4};
        for (int i = 0; i < 5; ++i) m_code[At(index)][At(i)] = static_cast<unsigned char>(bytes[i]);
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
        return Emit(Noise(), Noise(), Constant(v), Noise(), Noise());
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
        if (which < 10) return Emit(16, Noise(), Value(depth - 1), Noise(), Noise());
        if (which < 18) {
            const int opcode = which == 17 ? 18 : which < 14 ? 17 : 19;
            const int left = Value(depth - 1);
            return Emit(opcode, Noise(), left, Value(depth - 1), Noise());
        }
        if (which == 18) return Comparison(depth - 1);
        const int body = Value(depth - 1);
        return Emit(3, body, Noise(), m_random.Below(2), Noise());
    }
    int Stream() {
        const int odd[] = {Streams(), 50, 51, -1};
        if (m_random.OneIn(12)) return Constant(odd[m_random.Below(4)]);
        return m_random.OneIn(8) ? Value(2) : Constant(m_random.Below(Streams()));
    }
    int Comparison(int depth) {
        const int left = Value(m_random.OneIn(3) ? depth : 0);
        const int right = Value(m_random.OneIn(3) ? depth : 0);
        return Emit(m_random.Between(26, 31), Noise(), left, right, Noise());
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
            case 1:
                return Emit(33, m_random.OneIn(15) ? Unknown() : TokenVariable(), Selector(),
                            Noise(), next);
            case 2: {
                const int v = m_random.OneIn(3) ? m_world.BoundMark(m_random) : TokenVariable();
                const int variable = Constant(m_random.OneIn(15) ? Unknown() : v);
                return Emit(51 + m_random.Below(2), Noise(), variable, Selector(), next);
            }
            case 3: return Emit(35, Noise(), 0, MarkVariable(), next);
            case 4: return Emit(36, Noise(), 0, TokenVariable(), next);
            case 5: {
                const int v = TokenVariable();  // twice, so that there is something to restore
                return Emit(36, Noise(), 0, v, Emit(36, Noise(), 0, v, next));
            }
            case 6: {
                const int left = Value(1);
                return Emit(38, Noise(), left, Value(1), next);
            }
            case 7:
            case 8: return Emit(32, Noise(), 0, Noise(), next);
            case 9:
            case 10: return Emit(32, Noise(), Comparison(1), Noise(), next);
            case 11: return Emit(49, Noise(), Noise(), Noise(), next);
            case 12: return Emit(50, Noise(), m_random.OneIn(15) ? 0 : Stream(), Noise(), next);
            case 13: return m_random.OneIn(4) ? Value(1) : Comparison(1);
            default: return Comparison(2);
        }
    }

    int Inner(int depth) {
        const int which = m_random.Below(28);
        if (which < 5) return Repetition(which == 4 ? 10 : 8 + which % 2, depth);
        if (which < 7) {
            const int operand = Pattern(depth);
            return Emit(14 + which % 2, Noise(), operand, Noise(), Continuation(depth));
        }
        if (which < 11) {
            const int stream = m_random.OneIn(20) ? 0 : Stream();
            const int pattern = Optional(depth);
            return Emit(1, stream, Noise(), pattern, Continuation(depth));
        }
        if (which < 14) {
            const int body = Pattern(depth);
            return Emit(3, body, Noise(), m_random.OneIn(3) ? Noise() : 0, Noise());
        }
        if (which < 20) {
            const int left = Optional(depth);
            const int right = Optional(depth);
            const int opcode = which == 14 ? 4 : which == 15 ? 5 : 7;
            return Emit(opcode, Noise(), left, right, Continuation(depth));
        }
        if (which < 22) {
            const int operand = Pattern(depth);
            return Emit(6, Noise(), operand, Noise(), Continuation(depth));
        }
        if (which < 24) {
            const int pattern = Pattern(depth);
            return Emit(44 + which % 2, Noise(), pattern, Noise(), Noise());
        }
        const int opcode = 40 + which % 4;
        const int stream = opcode > 41 && m_random.OneIn(3) ? 0 : Stream();
        const int pattern = Pattern(depth);
        return Emit(opcode, Noise(), stream, pattern, Noise());
    }

    // Its operand and its continuation may lead back to it.
    int Repetition(int opcode, int depth) {
        const int index = NewIndex();
        if (opcode != 10) m_repetitions.push_back(index);
        const int operand = Pattern(depth);
        const int limit = opcode == 10 ? Noise() : Limit();
        const int next = Continuation(depth);
        if (opcode != 10) m_repetitions.pop_back();
        return Put(index, opcode, Noise(), operand, limit, next);
    }

    // A focus that finds its first position, mostly, in whatever direction it runs.
    int Focus() {
        m_start = m_world.BoundMark(m_random);
        const int start = Number(34, m_start);
        if (m_random.OneIn(12)) return m_random.OneIn(2) ? start : Pattern(4);
        int both = m_random.OneIn(3) ? Emit(3, start, Noise(), 0, Noise()) : start;
        // Whichever of the two comes first sets the position.
        both = Emit(m_random.OneIn(5) ? 4 : 7, Noise(), start, both, Pattern(5));
        if (m_random.OneIn(4)) return both;
        return Emit(3, both, m_random.OneIn(2) ? 1 : Noise(), m_random.OneIn(3) ? Noise() : 0,
                    Noise());
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
