// Which rule is tried where.
#include "host/blockrunner.h"

namespace mlds::rules {

namespace {

CSyncMark* EndOfToken(CSyncMark* pAt) {
    return pAt->GetNextSyncMark();
}

// The next mark, from here on, that a token follows; null at the end.
CSyncMark* BeginOfToken(CSyncMark* p) {
    while (p != nullptr && TokenRightOf(p) == nullptr) p = MarkRightOf(p);
    return p;
}

// Likewise leftward: the mark in front of the nearest token to the left.
CSyncMark* BeginOfTokenBefore(CSyncMark* p) {
    CToken* pToken = p->GetPrevToken();
    return pToken != nullptr ? pToken->GetPrevSyncMark() : nullptr;
}

bool LiesInside(CSyncMark* pMark, CSyncMark* pLeft, CSyncMark* pRight) {
    if (pMark == nullptr || pMark == pLeft) return false;
    for (CStreamObj* p = pLeft; p != pRight && p != nullptr; p = p->GetNextStreamObj()) {
        if (p == pMark) return true;
    }
    return false;
}

// Names that are none of the tier's are in no set.
bool Contains(const std::vector<bool>& names, CToken* pToken, bool bOtherwise) {
    const auto name = static_cast<std::size_t>(pToken->GetFieldValueIndex(kNameField));
    return name < names.size() ? names[name] : bOtherwise;
}

// As the interpreter sees an edge from the right: the mark, or one that only marks part it from,
// reaches the tier.
bool IsAtEdge(CSyncMark* pMark, TierId tier) {
    for (CStreamObj* p = pMark; p != nullptr && p->GetObjectType(otSyncMark);
         p = p->GetPrevStreamObj()) {
        if (static_cast<CSyncMark*>(p)->GetCorrespondingSyncMark(tier) != nullptr) return true;
    }
    return false;
}

}  // namespace

BlockRunner::BlockRunner(CPlexa& plexa, const CompiledRules& rules, RuleTests& tests, int block,
                         RuleObserver* pObserver, Growth& growth, std::vector<BlockFault>& faults)
    : m_plexa(plexa),
      m_rules(rules),
      m_tests(tests),
      m_nBlock(block),
      m_block(rules.model.blocks[static_cast<std::size_t>(block)]),
      m_fromTier(rules.model.tiers[static_cast<std::size_t>(m_block.from)]),
      m_pFrom(plexa.pStream(m_block.from)),
      m_pTo(m_block.to != kNoTier ? plexa.pStream(m_block.to) : m_pFrom),
      m_carrier(plexa, m_pFrom, m_pTo),
      m_pObserver(pObserver),
      m_growth(growth),
      m_faults(faults) {}

bool BlockRunner::Run() {
    if (m_pObserver != nullptr) m_pObserver->BeforeBlock(m_block);
    if (m_block.bFirst) return RunFirst();
    for (int rule = 0; rule < static_cast<int>(m_block.rules.size()); ++rule) {
        // Every rule begins a sweep of its own.
        m_carrier.Restart();
        const bool bInsertion = At(rule).bInsertion;
        const bool bDone =
            bInsertion ? (m_block.bLeftward ? RunInsertionLeftward(rule) : RunInsertion(rule))
                       : (m_block.bLeftward ? RunRuleLeftward(rule) : RunRule(rule));
        if (!bDone) return false;
    }
    return true;
}

const std::vector<int>& BlockRunner::CandidatesFor(CToken* pToken) const {
    const auto& lists = m_rules.candidates[static_cast<std::size_t>(m_nBlock)];
    const auto name = static_cast<std::size_t>(pToken->GetFieldValueIndex(kNameField));
    // The numbers of a time tier have one list; a name that is none of the tier's has it too.
    return lists[name < lists.size() ? name : 0];
}

bool BlockRunner::MayBegin(const Rule& rule, CToken* pToken) const {
    return Contains(rule.firstTokens, pToken, true);
}

// What the names of the tokens here and the edge on the left say without a test.
BlockRunner::Known BlockRunner::Foresee(int rule, CSyncMark* pAt) const {
    const TierId edge = At(rule).beginsAt;
    if (edge != kNoTier && !IsAtEdge(pAt, edge)) return Known::no;
    const Shortcuts& shortcuts =
        m_rules.shortcuts[static_cast<std::size_t>(m_nBlock)][static_cast<std::size_t>(rule)];
    if (!shortcuts.second.empty()) {
        CToken* pSecond = TokenRightOf(pAt)->GetNextToken();
        if (pSecond == nullptr || !Contains(shortcuts.second, pSecond, true)) return Known::no;
    }
    if (shortcuts.certain.empty()) return Known::nothing;
    return Contains(shortcuts.certain, TokenRightOf(pAt), false) ? Known::yes : Known::nothing;
}

// Who watches is told of every try, and why it failed.
bool BlockRunner::Holds(int rule, CSyncMark* pAt) {
    if (m_pObserver == nullptr && !m_plexa.HasViewer()) {
        const Known known = Foresee(rule, pAt);
        if (known == Known::no) return false;
        if (known == Known::yes) {
            m_tests.SetEnd(EndOfToken(pAt));
        } else if (!m_tests.Holds(m_nBlock, rule, pAt)) {
            return false;
        }
        return !Fills() || m_carrier.IsOpen(pAt, m_tests.end());
    }
    if (m_pObserver != nullptr) m_pObserver->BeforeRule(At(rule), pAt);
    bool bHolds = m_tests.Holds(m_nBlock, rule, pAt);
    if (bHolds && Fills() && !m_carrier.IsOpen(pAt, m_tests.end())) bHolds = false;
    if (m_pObserver != nullptr) {
        m_pObserver->AfterRule(At(rule), pAt, bHolds ? m_tests.end() : nullptr);
    }
    return bHolds;
}

bool BlockRunner::HoldsHere(int rule, CSyncMark* pAt) {
    return MayBegin(At(rule), TokenRightOf(pAt)) && !(Fills() && m_carrier.IsTakenAt(pAt)) &&
           Holds(rule, pAt);
}

// Where no rule holds, a token has its place in the other tier, and nothing there.
CSyncMark* BlockRunner::NothingHolds(CSyncMark* pAt) {
    CSyncMark* pEnd = EndOfToken(pAt);
    if (Fills()) {
        m_carrier.Carry(pAt);
        m_carrier.Carry(pEnd);
        if (m_fromTier.kind == Tier::Kind::fromText) {
            const auto name =
                static_cast<std::size_t>(TokenRightOf(pAt)->GetFieldValueIndex(kNameField));
            m_faults.push_back({pAt, "no rule for '" + m_fromTier.tokens[name] + "'"});
        }
    }
    if (m_pObserver != nullptr) m_pObserver->NoRule(m_block, pAt);
    return pEnd;
}

bool BlockRunner::RunFirst() {
    CSyncMark* pAt = BeginOfToken(m_pFrom->pGetFirstStreamObj());
    while (pAt != nullptr) {
        if (Fills() && m_carrier.IsTakenAt(pAt)) {
            if (m_pObserver != nullptr) m_pObserver->Taken(m_block, pAt);
            pAt = BeginOfToken(EndOfToken(pAt));
            continue;
        }
        int held = -1;
        for (const int rule : CandidatesFor(TokenRightOf(pAt))) {
            if (!Holds(rule, pAt)) continue;
            held = rule;
            break;
        }
        CSyncMark* pEnd = m_tests.end();
        if (held < 0) {
            // Inside of what a longer token covers there is nothing to say about single ones.
            const bool bOpen = !Fills() || m_carrier.IsOpen(pAt, EndOfToken(pAt));
            pEnd = bOpen ? NothingHolds(pAt) : EndOfToken(pAt);
        } else if (!Apply(held, pAt, pEnd)) {
            return false;
        }
        pAt = BeginOfToken(pEnd);
    }
    return true;
}

bool BlockRunner::RunRule(int rule) {
    CSyncMark* pAt = BeginOfToken(m_pFrom->pGetFirstStreamObj());
    while (pAt != nullptr) {
        CSyncMark* pEnd = nullptr;
        if (HoldsHere(rule, pAt)) {
            pEnd = m_tests.end();
            if (!Apply(rule, pAt, pEnd)) return false;
        } else {
            pEnd = EndOfToken(pAt);
        }
        pAt = BeginOfToken(pEnd);
    }
    return true;
}

// From the last token to the first. A focus that reaches into what the rule has just made does not
// count, or the rule would feed on itself.
bool BlockRunner::RunRuleLeftward(int rule) {
    CSyncMark* pMade = nullptr;
    CSyncMark* pAt = BeginOfTokenBefore(m_pFrom->pGetLastStreamObj());
    while (pAt != nullptr) {
        if (HoldsHere(rule, pAt)) {
            CSyncMark* pEnd = m_tests.end();
            if (!LiesInside(pMade, pAt, pEnd)) {
                if (!Apply(rule, pAt, pEnd)) return false;
                pMade = pAt;
            }
        }
        pAt = BeginOfTokenBefore(pAt);
    }
    return true;
}

// New tokens go behind the token to the left of the mark, or in front of the one to its right; the
// walk goes on behind the next token that was there before.
bool BlockRunner::RunInsertion(int rule) {
    const bool bBehind = At(rule).bBehindToken;
    CSyncMark* pAt = BeginOfToken(m_pFrom->pGetFirstStreamObj());
    while (pAt != nullptr) {
        CToken* pToken = TokenRightOf(pAt);
        CSyncMark* pPlace = bBehind ? EndOfToken(pAt) : pAt;
        if (Holds(rule, pPlace) && !Insert(rule, pPlace)) return false;
        // Inserting has put marks between; the token is where it was.
        pAt = BeginOfToken(bBehind ? pPlace : pToken->GetNextSyncMark());
    }
    return true;
}

bool BlockRunner::RunInsertionLeftward(int rule) {
    const bool bBehind = At(rule).bBehindToken;
    CToken* pToken = m_pFrom->pGetLastStreamObj()->GetPrevToken();
    while (pToken != nullptr) {
        CSyncMark* pPlace = bBehind ? pToken->GetNextSyncMark() : pToken->GetPrevSyncMark();
        CToken* pNext = pToken->GetPrevToken();
        if (Holds(rule, pPlace) && !Insert(rule, pPlace)) return false;
        pToken = pNext;
    }
    return true;
}

}  // namespace mlds::rules
