// Texts of any bytes through a whole language.
//
// The first byte of an input chooses what becomes of unknown characters and how fast it is spoken,
// the rest is the text.
#include "input.h"
#include "mlds/rules/rulehost.h"
#include "support/tiers.h"
#include "support/wholelanguage.h"

using mlds_fuzz::Require;

namespace {

constexpr std::size_t kMostBytes = 2000;

std::shared_ptr<const mlds::RuleSet> Rules() {
    mlds::rules::Diagnostics diagnostics;
    auto pRules = mlds::RuleSet::ReadText(mlds_test::kWholeLanguage, "whole.mlr", diagnostics);
    Require(pRules != nullptr, diagnostics.Text());
    return pRules;
}

std::size_t TokensOf(CStream* pStream) {
    std::size_t nTokens = 0;
    CStreamObj* p = pStream->pGetFirstStreamObj();
    for (; p != nullptr; p = p->GetNextStreamObj()) nTokens += p->GetObjectType(otToken) ? 1 : 0;
    return nTokens;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // One host for all: what an utterance leaves behind must not disturb the next.
    static mlds::RuleHost host(Rules());
    if (size < 1 || size > kMostBytes) return 0;
    mlds::RunOptions options;
    options.unknown = static_cast<mlds::rules::Unknown>(data[0] % 3);
    options.ratePercent = data[0] % 2 == 0 ? 100 : 25 + data[0];
    const std::string text(reinterpret_cast<const char*>(data) + 1, size - 1);
    const mlds::RunOutcome outcome = host.Run(text, options);
    Require(outcome.bDone || !outcome.faults.empty(), "not done, and nobody says why");
    const std::string wrong = mlds_test::CheckStructure(host.plexa());
    Require(wrong.empty(), wrong);
    const std::size_t nCharacters = TokensOf(host.plexa().pStream(mlds::rules::kTextTier));
    for (const mlds::rules::TextFault& fault : outcome.faults) {
        // Of a text that was not done there is no tier to compare with, only its bytes.
        const std::size_t nMost = outcome.bDone ? nCharacters : text.size();
        Require(fault.column >= 1 && fault.column <= std::max<std::size_t>(nMost, 1),
                "outside of the text: " + fault.what);
        Require(!fault.what.empty(), "nothing is said");
    }
    for (int tier = 0; tier < host.plexa().GetNumStreams(); ++tier) {
        host.Shown(tier);
        host.Ipa(tier);
    }
    return 0;
}
