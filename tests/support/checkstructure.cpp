// The whole-structure checker.
#include <algorithm>
#include <unordered_set>

#include "support/tiers.h"

namespace mlds_test {

namespace {

struct Rule {
    bool bHolds;
    const char* whenBroken;
};

bool IsToken(CStreamObj* p) {
    return p->GetObjectType(otToken);
}

class Checker {
public:
    Checker(CPlexa& plexa, Checks checks) : m_plexa(plexa), m_checks(checks) {}

    std::string Run() {
        for (int i = 0; i < m_plexa.GetNumStreams(); ++i) {
            m_chain = Chain(m_plexa.pStream(i));
            m_linked.insert(m_chain.begin(), m_chain.end());
            for (std::size_t k = 0; k < m_chain.size() && m_wrong.empty(); ++k) CheckObject(i, k);
            if (m_checks.bCounters && m_wrong.empty()) CheckCounters(i);
        }
        for (CStreamObj* p : m_linked) {
            if (!m_wrong.empty()) return m_wrong;
            if (!IsToken(p)) CheckTies(static_cast<CSyncMark*>(p));
        }
        return m_wrong;
    }

private:
    void Require(const std::string& where, std::initializer_list<Rule> rules) {
        for (const Rule& rule : rules) {
            if (!rule.bHolds && m_wrong.empty()) m_wrong = where + ": " + rule.whenBroken;
        }
    }

    void CheckObject(int stream, std::size_t k) {
        CStream* pStream = m_plexa.pStream(stream);
        CStreamObj* p = m_chain[k];
        CStreamObj* pPrev = k > 0 ? m_chain[k - 1] : nullptr;
        const bool bLast = k + 1 == m_chain.size();
        const bool bIndices = m_checks.bIndices;
        Require(
            pStream->GetStreamName() + std::string(" object ") + std::to_string(k),
            {{p->GetPrevStreamObj() == pPrev, "the left link is not the left neighbour"},
             {bLast == (p == pStream->pGetLastStreamObj()), "the chain and the stream end apart"},
             {p->GetStream() == pStream, "belongs to another stream"},
             {IsToken(p) || p->GetObjectType(otSyncMark), "neither token nor mark"},
             {!IsToken(p) || (k > 1 && k + 2 < m_chain.size()), "a token touches a sentinel"},
             {!m_checks.bTokensApart || k == 0 || !IsToken(p) || !IsToken(pPrev), "tokens touch"},
             {!bIndices || k > 0 || p->GetOrderIndex() == 0, "does not start with index 0"},
             {!bIndices || k == 0 || pPrev->LeftOf(p), "the order index does not grow"},
             {!bIndices || !bLast || p->GetOrderIndex() == 0xFFFFFFFFu, "not the last index"}});
    }
    void CheckCounters(int stream) {
        CStream* pStream = m_plexa.pStream(stream);
        const auto n = static_cast<int>(m_chain.size()) - 2;
        const auto nTokens =
            static_cast<int>(std::count_if(m_chain.begin(), m_chain.end(), IsToken));
        Require(pStream->GetStreamName(),
                {{pStream->GetNumTokens() == nTokens, "wrong token counter"},
                 {pStream->GetNumSyncMarks() == n - nTokens, "wrong mark counter"}});
    }
    // All members of a group find the same member, themselves among them, in every stream.
    void CheckTies(CSyncMark* p) {
        if (!p->IsSynchronous()) return;
        bool bTied = p->IsSynchronous(p->GetStream());
        int nMembers = 0;
        for (int i = 0; i < m_plexa.GetNumStreams() && bTied; ++i) {
            CSyncMark* pMember = p->GetCorrespondingSyncMark(i);
            if (pMember == nullptr) continue;
            ++nMembers;
            bTied = m_linked.count(pMember) != 0 && pMember->GetStream() == m_plexa.pStream(i);
            for (int j = 0; j < m_plexa.GetNumStreams() && bTied; ++j) {
                bTied = pMember->GetCorrespondingSyncMark(j) == p->GetCorrespondingSyncMark(j);
            }
        }
        Require(Where(p), {{bTied, "the members of its group do not agree"},
                           {nMembers > 1, "the only member of its group"}});
    }

    CPlexa& m_plexa;
    Checks m_checks;
    std::vector<CStreamObj*> m_chain;
    std::unordered_set<CStreamObj*> m_linked;
    std::string m_wrong;
};

}  // namespace

std::string CheckStructure(CPlexa& plexa, Checks checks) {
    return Checker(plexa, checks).Run();
}

}  // namespace mlds_test
