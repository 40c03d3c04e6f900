// Running the rules of a block over a container.
#ifndef MLDS_RULES_BLOCKRUNNER_H
#define MLDS_RULES_BLOCKRUNNER_H

#include <cstddef>
#include <string>
#include <vector>

#include "compiled.h"
#include "host/carrier.h"
#include "host/ruletests.h"
#include "mlds/rules/observer.h"

namespace mlds::rules {

/// What a block could not do.
struct BlockFault {
    CSyncMark* pAt = nullptr;  ///< the place, in the block's first tier
    std::string what;
};

/// How many tokens rules may still make of one text. Rules that lengthen what others have made
/// double it with every one of them, so that a few lines would fill any memory.
class Growth {
public:
    explicit Growth(std::size_t nTokensOfText) : m_nMost(kAlways + kEach * nTokensOfText) {}

    bool Take(std::size_t nTokens) {
        m_nMade += nTokens;
        return m_nMade <= m_nMost;
    }
    std::size_t most() const { return m_nMost; }

private:
    // Far more than a language has tiers and rules to make of a letter.
    static constexpr std::size_t kAlways = 10'000;
    static constexpr std::size_t kEach = 200;

    std::size_t m_nMost;
    std::size_t m_nMade = 0;
};

/// Runs one block over everything that is there. Marks are walked as they are at every step, for
/// rules insert and delete.
class BlockRunner {
public:
    BlockRunner(CPlexa& plexa, const CompiledRules& rules, RuleTests& tests, int block,
                RuleObserver* pObserver, Growth& growth, std::vector<BlockFault>& faults);

    /// False when memory runs out, or the rules have made too much, which is a fault.
    bool Run();

private:
    bool RunFirst();
    bool RunRule(int rule);
    bool RunRuleLeftward(int rule);
    bool RunInsertion(int rule);
    bool RunInsertionLeftward(int rule);

    const Rule& At(int rule) const { return m_block.rules[static_cast<std::size_t>(rule)]; }
    bool Fills() const { return m_block.to != kNoTier; }
    const std::vector<int>& CandidatesFor(CToken* pToken) const;
    bool MayBegin(const Rule& rule, CToken* pToken) const;

    enum class Known { no, nothing, yes };
    Known Foresee(int rule, CSyncMark* pAt) const;
    bool Holds(int rule, CSyncMark* pAt);
    bool HoldsHere(int rule, CSyncMark* pAt);
    CSyncMark* NothingHolds(CSyncMark* pAt);

    bool Apply(int rule, CSyncMark* pAt, CSyncMark* pEnd);
    bool Fill(int rule, CSyncMark* pAt, CSyncMark* pEnd);
    bool Replace(int rule, CSyncMark* pAt, CSyncMark* pEnd);
    bool ReplaceEach(int rule, const std::vector<CToken*>& tokens);
    void Set(const Rule& rule, CSyncMark* pAt, CSyncMark* pEnd);
    void Scale(const Rule& rule, CSyncMark* pAt, CSyncMark* pEnd);
    bool Insert(int rule, CSyncMark* pAt);
    bool MayGrow(const Rule& rule, std::size_t nReplaced, CSyncMark* pAt);
    bool Clear(CStream* pStream, CSyncMark* pLeft, CSyncMark* pRight);
    bool InsertResult(int rule, CStream* pStream, CSyncMark* pLeft, CSyncMark* pRight);
    CToken* TokenOf(int rule, const Piece& piece, CStream* pStream);
    void KeepNumbers(CToken* pOld, CToken* pNew, const Piece& piece);

    CPlexa& m_plexa;
    const CompiledRules& m_rules;
    RuleTests& m_tests;
    int m_nBlock;
    const Block& m_block;
    const Tier& m_fromTier;
    CStream* m_pFrom;
    CStream* m_pTo;  // the same in blocks of one tier
    Carrier m_carrier;
    RuleObserver* m_pObserver;
    Growth& m_growth;
    std::vector<BlockFault>& m_faults;
};

/// Scales the default time stream between two of its marks to so many per cent, in whole
/// thousandths, sums rounded up to a whole unit. Stretches of no duration are left alone.
void ScaleTime(CPlexa& plexa, CSyncMark* pLeft, CSyncMark* pRight, int percent);

}  // namespace mlds::rules

#endif
