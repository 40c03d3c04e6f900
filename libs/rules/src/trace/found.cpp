// Places and elements in words.
#include "trace/found.h"

#include <algorithm>

namespace mlds::rules {

namespace {

const Tier& TierOf(const RuleSet& rules, TierId tier) {
    return rules.model().tiers[static_cast<std::size_t>(tier)];
}

// What the token has of a field that was asked for.
std::string StateOf(const Tier& tier, CToken* pToken, int field) {
    const Field& f = tier.fields[static_cast<std::size_t>(field)];
    const int value = pToken->GetFieldValueIndex(field);
    if (f.kind == Field::Kind::number) return f.name + '=' + std::to_string(value);
    if (f.bYesNo) return (value == 0 ? "with " : "without ") + f.name;
    const bool bKnown = value >= 0 && static_cast<std::size_t>(value) < f.values.size();
    return bKnown ? f.name + '=' + f.values[static_cast<std::size_t>(value)] : "no " + f.name;
}

void AddFields(const Condition& condition, std::vector<int>& fields) {
    const bool bAsks =
        condition.kind == Condition::Kind::compare || condition.kind == Condition::Kind::sameAs;
    if (bAsks && condition.field != kNameField &&
        std::find(fields.begin(), fields.end(), condition.field) == fields.end()) {
        fields.push_back(condition.field);
    }
    for (const Condition& part : condition.parts) AddFields(part, fields);
}

}  // namespace

std::string WantedText(const RuleSet& rules, TierId tier, const Pattern& pattern) {
    const Condition& condition = pattern.condition;
    const bool bName = pattern.kind == Pattern::Kind::token &&
                       condition.kind == Condition::Kind::compare &&
                       condition.field == kNameField && condition.comparison == Comparison::equal;
    const std::vector<std::string>& tokens = TierOf(rules, tier).tokens;
    if (bName && static_cast<std::size_t>(condition.value) < tokens.size()) {
        return tokens[static_cast<std::size_t>(condition.value)];
    }
    const bool bAny = pattern.kind == Pattern::Kind::token &&
                      condition.kind == Condition::Kind::all && condition.parts.empty();
    if (bAny) return "a token";
    return std::string(rules.sources().TextOf(pattern.span));
}

std::string FoundText(RuleHost& host, CSyncMark* pAt, bool bLeftward, const Condition* pCondition) {
    CToken* pToken = nullptr;
    if (pAt != nullptr) pToken = bLeftward ? pAt->GetPrevToken() : pAt->GetNextToken();
    if (pToken == nullptr) {
        return bLeftward ? "the beginning of the utterance" : "the end of the utterance";
    }
    std::string text = host.Label(pToken, false);
    if (pCondition == nullptr) return text;
    std::vector<int> fields;
    AddFields(*pCondition, fields);
    const Tier& tier = TierOf(host.rules(), pToken->GetStream()->GetStreamIndex());
    bool bFirst = true;
    for (const int field : fields) {
        const std::string state = StateOf(tier, pToken, field);
        const bool bPhrase = state.starts_with("with");
        text += (bFirst && bPhrase ? " " : ", ") + state;
        bFirst = false;
    }
    return text;
}

std::string TokensText(RuleHost& host, CSyncMark* pLeft, CSyncMark* pRight) {
    const Tier& tier = TierOf(host.rules(), pLeft->GetStream()->GetStreamIndex());
    const bool bTight = tier.kind == Tier::Kind::fromText;
    std::string text;
    for (CStreamObj* p = pLeft; p != nullptr && p != pRight; p = p->GetNextStreamObj()) {
        if (!p->GetObjectType(otToken)) continue;
        if (!text.empty() && !bTight) text += ' ';
        text += host.Label(static_cast<CToken*>(p), false);
    }
    return text;
}

}  // namespace mlds::rules
