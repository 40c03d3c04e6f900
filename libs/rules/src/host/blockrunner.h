// Running the rules of a block over a container.
#ifndef MLDS_RULES_BLOCKRUNNER_H
#define MLDS_RULES_BLOCKRUNNER_H

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

/// Runs one block over everything that is there. Marks are walked as they are at every step, for
/// rules insert and delete.
class BlockRunner {
public:
    BlockRunner(CPlexa& plexa, const CompiledRules& rules, RuleTests& tests, int block,
                RuleObserver* pObserver, std::vector<BlockFault>& faults);

    /// False when memory runs out.
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
    std::vector<BlockFault>& m_faults;
};

/// Scales the default time stream between two of its marks to so many per cent, in whole
/// thousandths, sums rounded up to a whole unit. Stretches of no duration are left alone.
void ScaleTime(CPlexa& plexa, CSyncMark* pLeft, CSyncMark* pRight, int percent);

}  // namespace mlds::rules

#endif
