// Looking up names.
#include "mlds/testasm/schema.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cstdint>

namespace mlds_testasm {

namespace {

template <typename T>
const T* ItemAt(const std::vector<T>& items, int i) {
    return i >= 0 && i < static_cast<int>(items.size()) ? &items[static_cast<std::size_t>(i)]
                                                        : nullptr;
}

std::string NameOf(const std::string& item) {
    return item;
}

template <typename T>
std::string NameOf(const T& item) {
    return item.name;
}

template <typename T>
int Find(const std::vector<T>& items, std::string_view name) {
    const auto found = std::find_if(items.begin(), items.end(),
                                    [&](const T& item) { return NameOf(item) == name; });
    return found != items.end() ? static_cast<int>(found - items.begin()) : -1;
}

template <typename T>
std::optional<T> Read(std::string_view text) {
    T value{};
    const char* pEnd = text.data() + text.size();
    const auto result = std::from_chars(text.data(), pEnd, value);
    if (result.ec != std::errc() || result.ptr != pEnd) return std::nullopt;
    return value;
}

// A text that names a value and a set stands for one number only if they agree.
std::optional<int> EnumValue(const SchemaField& field, std::string_view text,
                             std::string* pExpected) {
    const int value = Find(field.values, text);
    const int set = Find(field.sets, text);
    if (value < 0 && set < 0) {
        *pExpected = "a value or set of the field";
    } else if (value >= 0 && set >= 0 && value != set) {
        *pExpected = "a number, as this is value " + std::to_string(value) + " and set " +
                     std::to_string(set) + " of the field";
    } else {
        return std::max(value, set);
    }
    return std::nullopt;
}

}  // namespace

int Schema::FindStream(std::string_view name) const {
    return Find(streams, name);
}

int Schema::FindField(int stream, std::string_view name) const {
    const SchemaStream* pStream = ItemAt(streams, stream);
    return pStream != nullptr ? Find(pStream->fields, name) : -1;
}

int Schema::FindVariable(std::string_view name) const {
    return Find(variables, name);
}

const SchemaField* Schema::FieldAt(int stream, int field) const {
    const SchemaStream* pStream = ItemAt(streams, stream);
    return pStream != nullptr ? ItemAt(pStream->fields, field) : nullptr;
}

const SchemaVariable* Schema::VariableAt(int index) const {
    return ItemAt(variables, index);
}

std::optional<int> Schema::ValueOf(int stream, int field, std::string_view text,
                                   std::string* pExpected) const {
    std::string unwanted;
    if (pExpected == nullptr) pExpected = &unwanted;
    *pExpected = "a field that is declared";
    const SchemaField* pField = FieldAt(stream, field);
    if (pField == nullptr) return std::nullopt;
    switch (pField->type) {
        case fvInt: *pExpected = "a number"; return Read<int>(text);
        case fvBool:
            *pExpected = "yes or no";
            if (text != "yes" && text != "no") return std::nullopt;
            return text == "yes" ? 1 : 0;
        case fvFloat:
            *pExpected = "a number";
            if (const auto value = Read<float>(text)) return std::bit_cast<std::int32_t>(*value);
            return std::nullopt;
        case fvChar:
            *pExpected = "one character";
            if (text.size() != 1) return std::nullopt;
            return static_cast<signed char>(text[0]);
        default: return EnumValue(*pField, text, pExpected);
    }
}

std::optional<std::string> Schema::ValueText(int stream, int field, int value) const {
    const SchemaField* pField = FieldAt(stream, field);
    if (pField == nullptr) return std::nullopt;
    std::string text;
    if (pField->type == fvChar) {
        text = static_cast<char>(value);
    } else if (pField->type == fvBool) {
        text = value == 1 ? "yes" : "no";
    } else if (const std::string* pValue = ItemAt(pField->values, value)) {
        text = *pValue;
    } else if (const std::string* pSet = ItemAt(pField->sets, value)) {
        text = *pSet;
    }
    if (ValueOf(stream, field, text) != value) return std::nullopt;
    return text;
}

}  // namespace mlds_testasm
