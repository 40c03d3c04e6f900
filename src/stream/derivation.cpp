// Derivation of field values from names, remembered per field.
//
// Deriving a value means walking sets, ranges and lists. The answer depends on the name value and
// the field's sets alone, so each field keeps a table of answers for the values that names have:
// character codes and indices of possible values. It is filled when first needed and dropped when a
// set changes; other values, and fields whose table could not be had, are answered by walking.
#include "stream/derivation.h"
#include "stream/fieldaccess.h"

#include <cstdint>
#include <new>

namespace mlds {

struct DerivedValues {
    static constexpr int kLowest = -128;
    static constexpr int kNone = INT32_MIN;  // no set contains the value

    int nHighest;
    std::int32_t* sets() { return reinterpret_cast<std::int32_t*>(this + 1); }
};

namespace {

int FirstSetWith(CField* pField, int value) {
    for (int i = 0, n = Internals::NumSets(pField); i < n; ++i) {
        CFieldValueSet* pSet = Internals::Set(pField, i);
        if (pSet != nullptr && pSet->IsSetMember(value)) return pSet->GetIndex();
    }
    return DerivedValues::kNone;
}

// Sets that memberwise copies of fields share tell only the field that made them.
bool IsToldOfChanges(CField* pField) {
    for (int i = 0, n = Internals::NumSets(pField); i < n; ++i) {
        if (FieldAccess::ListedIn(Internals::Set(pField, i)) != pField) return false;
    }
    return true;
}

DerivedValues* Remember(CField* pField, CField* pNameField) {
    int highest = pNameField != nullptr ? pNameField->GetNumPossibleValues() - 1 : 0;
    if (highest < 127) highest = 127;
    const std::size_t n = static_cast<std::size_t>(highest - DerivedValues::kLowest) + 1;
    void* p = ::operator new(sizeof(DerivedValues) + n * sizeof(std::int32_t), std::nothrow);
    if (p == nullptr) return nullptr;
    auto* pDerived = new (p) DerivedValues{highest};
    for (std::size_t i = 0; i < n; ++i) {
        const int value = DerivedValues::kLowest + static_cast<int>(i);
        new (pDerived->sets() + i) std::int32_t(FirstSetWith(pField, value));
    }
    FieldAccess::Derived(pField) = pDerived;
    return pDerived;
}

int DerivedValue(CStream* pStream, CField* pField, int value) {
    DerivedValues* pDerived = FieldAccess::Derived(pField);
    if (pDerived == nullptr && IsToldOfChanges(pField))
        pDerived = Remember(pField, Internals::Field(pStream, 0));
    if (pDerived != nullptr && value >= DerivedValues::kLowest && value <= pDerived->nHighest) {
        return pDerived->sets()[value - DerivedValues::kLowest];
    }
    return FirstSetWith(pField, value);
}

}  // namespace

void DeriveFields(CStream* pStream, FieldSlots* pSlots, int nameValue) {
    const int n = static_cast<int>(pSlots->nSlots);
    for (int j = 1; j < n; ++j) {
        CField* pField = Internals::Field(pStream, j);
        if (pField == nullptr || Internals::NumSets(pField) == 0) continue;
        const int set = DerivedValue(pStream, pField, nameValue);
        if (set != DerivedValues::kNone) pSlots->slots()[j].value = set;
    }
}

void ForgetDerivedValues(CField* pField) {
    if (pField == nullptr) return;
    ::operator delete(FieldAccess::Derived(pField));
    FieldAccess::Derived(pField) = nullptr;
}

}  // namespace mlds
