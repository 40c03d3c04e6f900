// Random containers and random test programs for them, the same for one seed on every platform.
#ifndef MLDS_TESTS_SUPPORT_MODEL_RANDOMWORLD_H
#define MLDS_TESTS_SUPPORT_MODEL_RANDOMWORLD_H

#include <array>
#include <cstdint>
#include <deque>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "mlds/mlds.h"

namespace mlds_test {

class Random {
public:
    explicit Random(std::uint64_t seed) : m_engine(seed) {}
    /// A number from 0 to n - 1. Not by a distribution, whose numbers differ between platforms.
    int Below(int n) { return static_cast<int>(m_engine() % static_cast<std::uint64_t>(n)); }
    int Between(int low, int high) { return low + Below(high - low + 1); }
    bool OneIn(int n) { return Below(n) == 0; }

private:
    std::mt19937_64 m_engine;
};

/// A container with up to six streams, groups, fences, and a list of bound variables: first the
/// marks, then the tokens.
class RandomWorld {
public:
    explicit RandomWorld(Random& random);
    RandomWorld(const RandomWorld&) = delete;
    RandomWorld& operator=(const RandomWorld&) = delete;
    ~RandomWorld();

    /// Everything that a test can see, as text.
    std::string Describe();
    /// A host's variable as text.
    std::string Bound(int v);
    /// The index of a mark variable that holds a mark, if there is one.
    int BoundMark(Random& random) const;
    /// The stream of the mark that a variable holds; -1 if it holds none.
    int StreamOfMark(int v) const;

    CPlexa plexa{nullptr};
    CVarList varList{&plexa};
    std::vector<int> ranking;  // as the container has it
    int markVariables = 0;
    int tokenVariables = 0;

private:
    void Fill(Random& random, int stream);
    void TieByTime(Random& random);
    void TieAtRandom(Random& random);
    CSyncMark* AnyMark(Random& random, bool bSentinels);
    CToken* AnyToken(Random& random);
    CToken* NewToken(Random& random, CStream* pStream);
    void Rank();

    // The host's variables; a deque, so that their addresses stay.
    std::deque<CSyncMark*> m_marks;
    std::deque<CToken*> m_tokens;
    std::deque<std::string> m_names;
    std::vector<CSyncMark**> m_markOf;  // by variable
    std::vector<CToken**> m_tokenOf;
    std::vector<CToken*> m_ownTokens;  // in no stream
};

/// A test as the interpreter takes it, with noise in front of its header and in unused bytes.
struct RandomProgram {
    std::vector<std::array<unsigned char, 5>> code;
    int base = 0;
    std::vector<int> used;  // relative indices of its instructions, the header first

    /// Every instruction on a line.
    std::string List() const;
};

/// A well-formed program: operands that are required are there, links lead in circles only through
/// repetitions, variables have the kind that their operators expect. It may run for ever.
RandomProgram MakeProgram(Random& random, RandomWorld& world);

}  // namespace mlds_test

#endif
