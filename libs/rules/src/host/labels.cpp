// Tokens as people read them.
#include "host/labels.h"

#include <algorithm>

namespace mlds::rules {

namespace {

bool Compares(int value, Comparison comparison, int with) {
    switch (comparison) {
        case Comparison::equal: return value == with;
        case Comparison::notEqual: return value != with;
        case Comparison::less: return value < with;
        case Comparison::lessOrEqual: return value <= with;
        case Comparison::greater: return value > with;
        case Comparison::greaterOrEqual: return value >= with;
    }
    return false;
}

const std::string* NameOf(const Model& model, TierId tier, int token, bool bIpa) {
    const auto& tokens = model.tiers[static_cast<std::size_t>(tier)].tokens;
    if (token < 0 || static_cast<std::size_t>(token) >= tokens.size()) return nullptr;
    if (bIpa) {
        for (const IpaText& ipa : model.ipa) {
            if (ipa.tier == tier) return &ipa.texts[static_cast<std::size_t>(token)];
        }
    }
    return &tokens[static_cast<std::size_t>(token)];
}

// What words end at: marks of the first tier that spans the letters, or else empty places.
TierId TierOfWords(const Model& model) {
    for (std::size_t i = 0; i < model.tiers.size(); ++i) {
        const Tier& tier = model.tiers[i];
        if (tier.kind == Tier::Kind::spans && tier.spanned == model.text.tier) {
            return static_cast<TierId>(i);
        }
    }
    return kNoTier;
}

// Calls with every token of a tier, and whether it begins a word.
template <typename Call>
void ForEachToken(const Model& model, CPlexa& plexa, TierId tier, Call&& call) {
    const TierId words = TierOfWords(model);
    CStream* pWords = words != kNoTier && words != tier ? plexa.pStream(words) : nullptr;
    bool bNewWord = true;
    int nMarks = 0;
    CStreamObj* p = plexa.pStream(tier)->pGetFirstStreamObj();
    for (; p != nullptr; p = p->GetNextStreamObj()) {
        if (p->GetObjectType(otToken)) {
            call(static_cast<CToken*>(p), bNewWord);
            bNewWord = false;
            nMarks = 0;
            continue;
        }
        ++nMarks;
        bNewWord |= pWords != nullptr
                        ? static_cast<CSyncMark*>(p)->GetCorrespondingSyncMark(pWords) != nullptr
                        : nMarks > 1;
    }
}

// True if a token of the mark's tier begins (or ends) where this token does, and is to be marked.
bool AppliesAt(CStream* pMarked, CToken* pToken, const ShowMark& mark) {
    if (pToken->GetStream() == pMarked) return Meets(pToken, mark.condition);
    CSyncMark* pEdge = mark.bBefore ? pToken->GetPrevSyncMark() : pToken->GetNextSyncMark();
    CSyncMark* pThere = pEdge->GetCorrespondingSyncMark(pMarked);
    if (pThere == nullptr) return false;
    CStreamObj* p = mark.bBefore ? pThere->GetNextStreamObj() : pThere->GetPrevStreamObj();
    return p != nullptr && p->GetObjectType(otToken) &&
           Meets(static_cast<CToken*>(p), mark.condition);
}

}  // namespace

bool Meets(CToken* pToken, const Condition& condition) {
    const auto meets = [pToken](const Condition& part) { return Meets(pToken, part); };
    switch (condition.kind) {
        case Condition::Kind::all:
            return std::all_of(condition.parts.begin(), condition.parts.end(), meets);
        case Condition::Kind::any:
            return std::any_of(condition.parts.begin(), condition.parts.end(), meets);
        case Condition::Kind::isNot: return !meets(condition.parts.front());
        case Condition::Kind::compare:
            return Compares(pToken->GetFieldValueIndex(condition.field), condition.comparison,
                            condition.value);
        case Condition::Kind::sameAs: return false;
    }
    return false;
}

namespace {

// The marks of "show" around a token.
std::string WithMarks(const Model& model, CToken* pToken, std::string label, bool bIpa) {
    const TierId tier = pToken->GetStream()->GetStreamIndex();
    for (const ShowMark& mark : model.showMarks) {
        if (mark.tier != tier || mark.bIpa != bIpa || !Meets(pToken, mark.condition)) continue;
        label = mark.bBefore ? mark.mark + label : label + mark.mark;
    }
    return label;
}

std::string NameWithMarks(const Model& model, CToken* pToken, bool bIpa) {
    const TierId tier = pToken->GetStream()->GetStreamIndex();
    const int name = pToken->GetFieldValueIndex(kNameField);
    const std::string* pName = NameOf(model, tier, name, bIpa);
    return WithMarks(model, pToken, pName != nullptr ? *pName : std::to_string(name), bIpa);
}

}  // namespace

TierId ShownBy(const Model& model, TierId tier) {
    for (const ShowBy& show : model.showBy) {
        if (show.tier == tier) return show.by;
    }
    return kNoTier;
}

std::string LabelOf(const Model& model, CPlexa& plexa, CToken* pToken, bool bIpa) {
    const TierId by = ShownBy(model, pToken->GetStream()->GetStreamIndex());
    if (by == kNoTier) return NameWithMarks(model, pToken, bIpa);
    CStream* pBy = plexa.pStream(by);
    CSyncMark* pBegin = pToken->GetPrevSyncMark()->GetCorrespondingSyncMark(pBy);
    CSyncMark* pEnd = pToken->GetNextSyncMark()->GetCorrespondingSyncMark(pBy);
    if (pBegin == nullptr || pEnd == nullptr) return NameWithMarks(model, pToken, bIpa);
    std::string label;
    for (CStreamObj* p = pBegin; p != nullptr && p != pEnd; p = p->GetNextStreamObj()) {
        if (p->GetObjectType(otToken)) label += NameWithMarks(model, static_cast<CToken*>(p), bIpa);
    }
    return WithMarks(model, pToken, std::move(label), bIpa);
}

std::string ShownTier(const Model& model, CPlexa& plexa, TierId tier) {
    std::string shown;
    ForEachToken(model, plexa, tier, [&](CToken* pToken, bool bNewWord) {
        if (!shown.empty()) shown += bNewWord ? "  " : " ";
        shown += LabelOf(model, plexa, pToken, false);
    });
    return shown;
}

std::string IpaOfTier(const Model& model, CPlexa& plexa, TierId tier) {
    std::string ipa;
    ForEachToken(model, plexa, tier, [&](CToken* pToken, bool bNewWord) {
        if (bNewWord && !ipa.empty()) ipa += ' ';
        std::string label;
        const std::string* pName =
            NameOf(model, tier, pToken->GetFieldValueIndex(kNameField), true);
        if (pName != nullptr) label = *pName;
        for (const ShowMark& mark : model.showMarks) {
            if (!mark.bIpa) continue;
            const bool bHere = AppliesAt(plexa.pStream(mark.tier), pToken, mark);
            if (bHere) label = mark.bBefore ? mark.mark + label : label + mark.mark;
        }
        ipa += label;
    });
    return ipa;
}

}  // namespace mlds::rules
