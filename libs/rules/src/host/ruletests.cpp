// The variables of rules, and their tests.
#include "host/ruletests.h"

#include <limits>

namespace mlds::rules {

// A rule with captures or marks has a list of its own, in which they have their own names. Tokens
// are copied into tokens of the host, which stand in no stream.
struct RuleTests::OwnList {
    OwnList(CPlexa& plexa, const Rule& rule, CSyncMark** ppAt, CSyncMark** ppEnd)
        : list(&plexa), marks(rule.variables.size()), tokens(rule.variables.size()) {
        list.AddSyncMarkPtr("^at", ppAt);
        list.AddSyncMarkPtr("^end", ppEnd);
        for (std::size_t i = 0; i < rule.variables.size(); ++i) {
            const Variable& variable = rule.variables[i];
            if (variable.bToken) {
                tokens[i] = plexa.pStream(variable.tier)->CreateToken();
                if (tokens[i] == nullptr) throw std::bad_alloc();
                list.AddTokenPtr(variable.name.c_str(), &tokens[i]);
            } else {
                list.AddSyncMarkPtr(variable.name.c_str(), &marks[i]);
            }
        }
        // Lists begin on top of their container's stack; this one waits until its rule is tried.
        plexa.PopVarListStack();
    }
    ~OwnList() {
        for (CToken* pToken : tokens) CStream::DiscardStreamObj(pToken);
    }
    OwnList(const OwnList&) = delete;
    OwnList& operator=(const OwnList&) = delete;

    // What an earlier try bound must not be seen by this one. No token has such values.
    void Clear() {
        for (CSyncMark*& pMark : marks) pMark = nullptr;
        for (CToken* pToken : tokens) {
            if (pToken == nullptr) continue;
            const int nFields = pToken->GetStream()->GetNumFields();
            for (int i = 0; i < nFields; ++i) {
                pToken->SetFieldValue(i, std::numeric_limits<int>::min());
            }
        }
    }

    CVarList list;
    std::vector<CSyncMark*> marks;
    std::vector<CToken*> tokens;
};

RuleTests::RuleTests(CPlexa& plexa, const CompiledRules& rules)
    : m_plexa(plexa), m_rules(rules), m_variables(&plexa) {
    m_variables.AddSyncMarkPtr("^at", &m_pAt);
    m_variables.AddSyncMarkPtr("^end", &m_pEnd);
    for (const Block& block : rules.model.blocks) {
        auto& lists = m_own.emplace_back();
        for (const Rule& rule : block.rules) {
            lists.push_back(rule.variables.empty()
                                ? nullptr
                                : std::make_unique<OwnList>(plexa, rule, &m_pAt, &m_pEnd));
        }
    }
}

RuleTests::~RuleTests() = default;

RuleTests::OwnList* RuleTests::ListOf(int block, int rule) {
    return m_own[static_cast<std::size_t>(block)][static_cast<std::size_t>(rule)].get();
}

bool RuleTests::Test(int test) {
    const LoweredTest& lowered = m_rules.lowered.tests[static_cast<std::size_t>(test)];
    return m_plexa.Test(lowered.name.c_str(), m_rules.lowered.code.get(), lowered.base);
}

bool RuleTests::Holds(int block, int rule, CSyncMark* pAt) {
    const LoweredRule& lowered =
        m_rules.lowered.rules[static_cast<std::size_t>(block)][static_cast<std::size_t>(rule)];
    m_pAt = pAt;
    m_pEnd = nullptr;
    OwnList* pOwn = ListOf(block, rule);
    if (pOwn != nullptr) {
        pOwn->Clear();
        m_plexa.PushVarListStack(&pOwn->list);
    }
    bool bHolds = false;
    for (const int test : lowered.where) {
        bHolds = Test(test);
        if (bHolds) break;
    }
    // Exceptions bind the end of nothing, but their captures would stay.
    for (std::size_t i = 0; bHolds && i < lowered.except.size(); ++i) {
        bHolds = !Test(lowered.except[i]);
    }
    if (pOwn != nullptr) m_plexa.PopVarListStack();
    return bHolds && m_pEnd != nullptr;
}

bool RuleTests::SpanHolds(TierId tier, std::size_t pattern, CSyncMark* pAt) {
    m_pAt = pAt;
    m_pEnd = nullptr;
    const bool bHolds = Test(m_rules.lowered.spans[static_cast<std::size_t>(tier)][pattern]);
    return bHolds && m_pEnd != nullptr;
}

CToken* RuleTests::Captured(int block, int rule, int variable) {
    CToken* pToken = ListOf(block, rule)->tokens[static_cast<std::size_t>(variable)];
    const bool bBound = pToken != nullptr &&
                        pToken->GetFieldValueIndex(kNameField) != std::numeric_limits<int>::min();
    return bBound ? pToken : nullptr;
}

void RuleTests::BindMark(int block, int rule, int variable, CSyncMark* pMark) {
    ListOf(block, rule)->marks[static_cast<std::size_t>(variable)] = pMark;
}

}  // namespace mlds::rules
