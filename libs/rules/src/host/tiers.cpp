// Declaring the tiers of a model: streams, fields, and the sets that features derive from.
#include "host/tiers.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

namespace mlds::rules {

namespace {

bool HasName(const Tier& tier) {
    return tier.kind != Tier::Kind::text && tier.kind != Tier::Kind::time;
}

CField* AddField(CStream* pStream, const std::string& name, FieldValType type) {
    CField* pField = pStream->AddField(name.c_str());
    // A name that is too long is left out without a word.
    if (pField == nullptr || name != pField->GetFieldName()) return nullptr;
    pField->SetFieldType(type);
    return pField;
}

// Values are set all or none, and only once.
bool SetValues(CField* pField, const std::vector<std::string>& values) {
    std::vector<const char*> texts;
    for (const std::string& value : values) texts.push_back(value.c_str());
    const int n = static_cast<int>(texts.size());
    if (n > 0) pField->SetPossibleValues(texts.data(), n);
    return pField->GetNumPossibleValues() == n;
}

// The tokens that have a value, as ranges of their indices: a set takes any number of ranges, of
// single values only 30.
std::vector<int> RangesOf(const Field& feature, int value) {
    std::vector<int> bounds;
    for (std::size_t i = 0; i < feature.valueOfToken.size(); ++i) {
        if (feature.valueOfToken[i] != value) continue;
        const int token = static_cast<int>(i);
        if (bounds.empty() || bounds.back() != token - 1)
            bounds.insert(bounds.end(), {token, token});
        bounds.back() = token;
    }
    return bounds;
}

// A set of one of these two names would hold every token. Sets are found by their place here, so
// that it may be called anything else.
std::string SetName(const std::string& value) {
    return value == "undefined" || value == "undef" ? value + "=" : value;
}

bool AddSet(CField* pField, const std::string& value, std::vector<int> bounds) {
    CFieldValueSet* pSet = pField->CreateFieldValueSet(SetName(value).c_str());
    if (pSet == nullptr) return false;
    if (bounds.empty()) return true;
    pSet->SetIncludeRanges(bounds.data(), static_cast<int>(bounds.size() / 2));
    return pSet->IsSetMember(bounds[0]);
}

// A set gives its place among the field's sets. The possible values stand in the same order, so
// that this number reads and writes as the value's name.
bool AddFeature(CStream* pStream, const Field& feature) {
    CField* pField = AddField(pStream, feature.name, fvEnum);
    if (pField == nullptr) return false;
    std::vector<std::string> values = feature.values;
    const bool bRest = LeavesTokensOut(feature);
    if (bRest) values.emplace_back(kNoValue);
    if (!SetValues(pField, values)) return false;
    for (std::size_t i = 0; i < values.size(); ++i) {
        const bool bIsRest = bRest && i == feature.values.size();
        const int value = bIsRest ? -1 : static_cast<int>(i);
        if (!AddSet(pField, values[i], RangesOf(feature, value))) return false;
    }
    return true;
}

// A new token holds 0 by itself. The default is for tokens that are reset, which would get -1.
bool AddNumber(CStream* pStream, const Field& field) {
    CField* pField = AddField(pStream, field.name, fvInt);
    if (pField != nullptr) pField->SetDefaultValue(0);
    return pField != nullptr;
}

// Text and time have numbers for names: characters that no list could hold, and durations.
bool AddTier(CPlexa& plexa, const Tier& tier) {
    CStream* pStream = plexa.pStream(plexa.AddStream(tier.name.c_str()));
    if (pStream == nullptr || tier.name != pStream->GetStreamName()) return false;
    for (const Field& field : tier.fields) {
        bool bAdded = false;
        switch (field.kind) {
            case Field::Kind::name: {
                CField* pField = AddField(pStream, field.name, HasName(tier) ? fvEnum : fvInt);
                bAdded = pField != nullptr && (!HasName(tier) || SetValues(pField, tier.tokens));
                break;
            }
            case Field::Kind::feature: bAdded = AddFeature(pStream, field); break;
            case Field::Kind::number: bAdded = AddNumber(pStream, field); break;
        }
        if (!bAdded) return false;
    }
    return true;
}

}  // namespace

bool LeavesTokensOut(const Field& feature) {
    return std::find(feature.valueOfToken.begin(), feature.valueOfToken.end(), -1) !=
           feature.valueOfToken.end();
}

bool AddTiers(CPlexa& plexa, const Model& model) {
    if (plexa.GetNumStreams() != 0) return false;
    for (const Tier& tier : model.tiers) {
        if (!AddTier(plexa, tier)) return false;
    }
    const auto isTime = [](const Tier& tier) { return tier.kind == Tier::Kind::time; };
    const auto time = std::find_if(model.tiers.begin(), model.tiers.end(), isTime);
    if (time != model.tiers.end()) {
        plexa.SetDefaultTimeStream(plexa.pStream(static_cast<int>(time - model.tiers.begin())));
    }
    return true;
}

bool DeclareTiers(CPlexa& plexa, const Model& model) {
    if (!AddTiers(plexa, model)) return false;
    plexa.Initialize();
    return true;
}

}  // namespace mlds::rules
