// Whether a container of somebody else's has the tiers that rules need.
#include <string>

#include "host/tiers.h"

namespace mlds::rules {

namespace {

std::string Name(const std::string& text) {
    return '\'' + text + '\'';
}

// Where a field of the container is another one than that of a container of our own.
std::string DifferenceOfFields(const std::string& stream, CField* pTheirs, CField* pOurs,
                               int nTokens) {
    const std::string where = "field " + Name(pOurs->GetFieldName()) + " of stream " + Name(stream);
    if (std::string(pTheirs->GetFieldName()) != pOurs->GetFieldName()) {
        return "stream " + Name(stream) + " has a field " + Name(pTheirs->GetFieldName()) +
               " where the rules need " + Name(pOurs->GetFieldName());
    }
    if (pTheirs->GetFieldType() != pOurs->GetFieldType()) return where + " is of another type";
    if (pTheirs->GetNumPossibleValues() != pOurs->GetNumPossibleValues()) {
        return where + " has " + std::to_string(pTheirs->GetNumPossibleValues()) +
               " possible values, and the rules need " +
               std::to_string(pOurs->GetNumPossibleValues());
    }
    for (int i = 0; i < pOurs->GetNumPossibleValues(); ++i) {
        if (std::string(pTheirs->GetPossibleValues(i)) == pOurs->GetPossibleValues(i)) continue;
        return where + " has " + Name(pTheirs->GetPossibleValues(i)) + " where the rules need " +
               Name(pOurs->GetPossibleValues(i));
    }
    if (pTheirs->GetNumFieldValueSets() != pOurs->GetNumFieldValueSets()) {
        return where + " has other value sets";
    }
    for (int s = 0; s < pOurs->GetNumFieldValueSets(); ++s) {
        CFieldValueSet* pOur = pOurs->GetFieldValueSet(s);
        CFieldValueSet* pTheir = pTheirs->GetFieldValueSet(s);
        for (int token = 0; token < nTokens; ++token) {
            if (pOur->IsSetMember(token) == pTheir->IsSetMember(token)) continue;
            return "set " + Name(pOur->GetName()) + " of " + where + " holds other tokens";
        }
    }
    return {};
}

}  // namespace

std::string DifferenceOfTiers(CPlexa& plexa, const Model& model) {
    // What the rules need is best said by a container that they have made themselves.
    CPlexa needed(nullptr);
    if (!DeclareTiers(needed, model)) return "memory ran out";
    for (int s = 0; s < needed.GetNumStreams(); ++s) {
        CStream* pOurs = needed.pStream(s);
        const std::string name = pOurs->GetStreamName();
        CStream* pTheirs = plexa.pStream(s);
        if (pTheirs == nullptr || name != pTheirs->GetStreamName()) {
            return "stream " + std::to_string(s) + " is " +
                   (pTheirs == nullptr ? "missing" : Name(pTheirs->GetStreamName())) +
                   ", and the rules need " + Name(name);
        }
        if (pTheirs->GetNumFields() < pOurs->GetNumFields()) {
            return "stream " + Name(name) + " has no field " +
                   Name(pOurs->GetField(pTheirs->GetNumFields())->GetFieldName());
        }
        const int nTokens =
            static_cast<int>(model.tiers[static_cast<std::size_t>(s)].tokens.size());
        for (int f = 0; f < pOurs->GetNumFields(); ++f) {
            const std::string difference =
                DifferenceOfFields(name, pTheirs->GetField(f), pOurs->GetField(f), nTokens);
            if (!difference.empty()) return difference;
        }
    }
    CStream* pTime = needed.GetDefaultTimeStream();
    CStream* pTheirTime = plexa.GetDefaultTimeStream();
    if (pTime != nullptr &&
        (pTheirTime == nullptr || pTheirTime->GetStreamIndex() != pTime->GetStreamIndex())) {
        return "the default time stream is not " + Name(pTime->GetStreamName());
    }
    return {};
}

}  // namespace mlds::rules
