// Coverage, and why a case failed.
#include "coverage.h"

#include <algorithm>
#include <iostream>
#include <sstream>

#include "mlds/rules/trace.h"

namespace mlds_program {

using namespace mlds::rules;

namespace {

// More than that is what "mlds trace" is for.
constexpr std::size_t kMostMisses = 4;
constexpr std::size_t kMostListed = 20;

std::string LineAndText(const Rule& rule) {
    return "line " + std::to_string(rule.span.line) + "  " + rule.text;
}

// The places of tokens in the first tiers of blocks, which later blocks may change, are kept as
// the columns of the text under them.
int ColumnUnder(CPlexa& plexa, CSyncMark* pMark) {
    CStream* pText = plexa.pStream(kTextTier);
    CSyncMark* pTyped = nullptr;
    for (CSyncMark* p = pMark; p != nullptr && pTyped == nullptr; p = p->GetPrevSyncMark()) {
        pTyped = p->GetCorrespondingSyncMark(pText);
    }
    int column = 0;
    for (CStreamObj* p = pTyped; p != nullptr; p = p->GetPrevStreamObj()) {
        if (p->GetObjectType(otToken)) ++column;
    }
    return column;
}

struct Miss {
    int column = 0;
    std::string text;
};

// Notes the rules that fill a tier, or change it, and did not hold.
class MissTrace : public RuleTrace {
public:
    MissTrace(mlds::RuleHost& host, TierId tier) : RuleTrace(host), m_tier(tier) {}

    std::vector<Miss> misses;

private:
    void Tried(const TriedRule& tried) override {
        const Block& block = *tried.pBlock;
        const TierId into = block.to == kNoTier ? block.from : block.to;
        if (tried.Holds() || into != m_tier) return;
        misses.push_back({ColumnUnder(host().plexa(), tried.pAt),
                          LineAndText(*tried.pRule) + "   did not hold: " + tried.Why()});
    }

    TierId m_tier;
};

std::vector<std::string> Tokens(const std::string& shown) {
    std::istringstream text(shown);
    std::vector<std::string> tokens;
    for (std::string token; text >> token;) tokens.push_back(token);
    return tokens;
}

}  // namespace

Coverage::Coverage(mlds::RuleHost& host) : m_host(host) {
    for (const Block& block : host.rules().model().blocks) m_held.emplace_back(block.rules.size());
    Resume();
}

void Coverage::AfterRule(const Rule& rule, CSyncMark*, CSyncMark* pEnd) {
    if (pEnd == nullptr) return;
    const auto block = static_cast<std::size_t>(rule.block);
    const Rule* pFirst = m_host.rules().model().blocks[block].rules.data();
    m_held[block][static_cast<std::size_t>(&rule - pFirst)] = true;
}

void Coverage::Print() const {
    const std::vector<Block>& blocks = m_host.rules().model().blocks;
    std::vector<const Rule*> idle;
    std::size_t nRules = 0;
    for (std::size_t b = 0; b < blocks.size(); ++b) {
        nRules += blocks[b].rules.size();
        for (std::size_t r = 0; r < blocks[b].rules.size(); ++r) {
            if (!m_held[b][r]) idle.push_back(&blocks[b].rules[r]);
        }
    }
    std::cout << nRules - idle.size() << " of " << nRules << " rules held"
              << (idle.empty() ? "" : "; these never did:") << '\n';
    for (std::size_t i = 0; i < std::min(idle.size(), kMostListed); ++i) {
        std::cout << "  " << LineAndText(*idle[i]) << '\n';
    }
    if (idle.size() > kMostListed) {
        std::cout << "  and " << idle.size() - kMostListed << " more\n";
    }
}

std::string NearMisses(mlds::RuleHost& host, std::string_view text, TierId tier,
                       std::string_view expected) {
    MissTrace trace(host, tier);
    mlds::RunOptions options;
    options.wanted = tier;
    if (!host.Run(text, options).bDone) return "";
    const std::vector<std::string> wanted = Tokens(std::string(expected));
    const std::vector<std::string> found = Tokens(host.Shown(tier));
    const auto [pWanted, pFound] = std::ranges::mismatch(wanted, found);
    // The first token that differs, or the last one where something is missing behind it.
    const auto index = std::min(static_cast<std::size_t>(pFound - found.begin()),
                                std::max<std::size_t>(found.size(), 1) - 1);
    CToken* pToken = host.plexa().pStream(tier)->pGetFirstStreamObj()->GetNextToken();
    for (std::size_t i = 0; i < index && pToken != nullptr; ++i) pToken = pToken->GetNextToken();
    if (pToken == nullptr) return "";
    const int column = ColumnUnder(host.plexa(), pToken->GetPrevSyncMark());
    std::string misses;
    std::size_t nMisses = 0;
    for (const Miss& miss : trace.misses) {
        if (miss.column != column || ++nMisses > kMostMisses) continue;
        misses += "\n    " + miss.text;
    }
    return misses;
}

}  // namespace mlds_program
