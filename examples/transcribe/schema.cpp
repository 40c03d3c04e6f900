// Declaring the fields of a stream.
#include "schema.h"

#include <sstream>
#include <stdexcept>

#include "latin1.h"
#include "require.h"

namespace transcribe {

namespace {

std::vector<std::string> Split(const std::string& utf8) {
    std::istringstream text(FromUtf8(utf8, Foreign::isFault).latin1);
    std::vector<std::string> words;
    for (std::string word; text >> word;) words.push_back(word);
    return words;
}

// The value of a stream's name field that stands for a name: a character's code, or the name's
// place among those declared.
int NameValue(CStream* pStream, const std::string& name) {
    CField* pNames = pStream->GetField(0);
    if (pNames->GetFieldType() == fvChar) return static_cast<signed char>(name[0]);
    const int value = pNames->GetValueIndex(name.c_str());
    if (value < 0) throw std::logic_error("no such name: " + ToUtf8(name));
    return value;
}

// Names as bounds of ranges, the lower and the upper in turn.
std::vector<int> Bounds(CStream* pStream, const std::string& names) {
    std::vector<int> bounds;
    for (const std::string& word : Split(names)) {
        const std::size_t dots = word.size() > 2 ? word.find("..", 1) : std::string::npos;
        const bool bRange = dots != std::string::npos;
        bounds.push_back(NameValue(pStream, word.substr(0, dots)));
        bounds.push_back(bRange ? NameValue(pStream, word.substr(dots + 2)) : bounds.back());
    }
    return bounds;
}

CFieldValueSet* AddSet(CField* pField, const char* name) {
    CFieldValueSet* pSet = pField->CreateFieldValueSet(name);
    Require(pSet != nullptr, "CreateFieldValueSet");
    return pSet;
}

}  // namespace

CField* AddField(CStream* pStream, const char* field, FieldValType type,
                 const std::string& values) {
    CField* pField = pStream->AddField(field);
    Require(pField != nullptr, "AddField");
    pField->SetFieldType(type);
    const std::vector<std::string> texts = Split(values);
    std::vector<const char*> pointers;
    for (const std::string& text : texts) pointers.push_back(text.c_str());
    if (!texts.empty()) pField->SetPossibleValues(pointers.data(), static_cast<int>(texts.size()));
    return pField;
}

// A set gives its place among the field's sets. With the sets' names as possible values, in the
// same order, this value reads and writes as the set's name.
void AddFeatures(CStream* pStream, const char* field, const std::vector<Feature>& features) {
    std::string values;
    for (const Feature& feature : features) values.append(feature.set).append(" ");
    CField* pField = AddField(pStream, field, fvEnum, values);
    for (const Feature& feature : features) {
        std::vector<int> bounds = Bounds(pStream, feature.names);
        AddSet(pField, feature.set)
            ->SetIncludeRanges(bounds.data(), static_cast<int>(bounds.size() / 2));
    }
}

void AddYesNo(CStream* pStream, const char* field, const std::string& names) {
    CField* pField = AddField(pStream, field, fvEnum, "yes no");
    std::vector<int> bounds = Bounds(pStream, names);
    const int n = static_cast<int>(bounds.size() / 2);
    AddSet(pField, "yes")->SetIncludeRanges(bounds.data(), n);
    AddSet(pField, "no")->SetExcludeRanges(bounds.data(), n);
}

}  // namespace transcribe
