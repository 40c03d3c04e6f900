// Tokens: comparison, copying of values, class tests.
#include <cstring>

#include "mlds/token.h"
#include "stream/fieldslots.h"

using mlds::FieldSlot;
using mlds::Internals;

bool CToken::TokenCompare(CToken* pOther) {
    if (pOther == nullptr || Internals::StreamOf(pOther) != Internals::StreamOf(this)) return false;
    const int n = mlds::NumSlots(this);
    if (mlds::NumSlots(pOther) != n) return false;
    for (int i = 0; i < n; ++i) {
        if (!mlds::SlotsAgree(m_pSlots->slots()[i], pOther->m_pSlots->slots()[i])) return false;
    }
    return true;
}

bool CToken::TokenFieldCompare(CToken* pOther, const char* fieldName) {
    return pOther != nullptr && fieldName != nullptr &&
           pOther->GetFieldValueIndex(fieldName) == GetFieldValueIndex(fieldName);
}

// By place, not by name: tokens of two streams copy as many values as both have. The types come
// along with the values.
void CToken::TokenCopy(CToken* pSource) {
    if (pSource == nullptr || pSource == this) return;
    int n = mlds::NumSlots(this);
    if (mlds::NumSlots(pSource) < n) n = mlds::NumSlots(pSource);
    if (n > 0) {
        std::memmove(m_pSlots->slots(), pSource->m_pSlots->slots(),
                     static_cast<std::size_t>(n) * sizeof(FieldSlot));
    }
    m_cDisplay = pSource->m_cDisplay;
}

// A one-character name is a token's name and no class: classes are looked for under longer ones.
bool CToken::IsItA(const char* className) {
    if (className == nullptr) return false;
    if (className[0] != '\0' && className[1] != '\0') {
        if (std::strcmp(className, "any") == 0) return true;
        // The first field that has such a set settles it.
        for (int i = 0, n = mlds::NumSlots(this); i < n; ++i) {
            CField* pField = Internals::Field(Internals::StreamOf(this), i);
            if (pField == nullptr) return false;  // of a container that is gone
            if (CFieldValueSet* pSet = pField->GetFieldValueSet(className)) {
                return m_pSlots->slots()[i].value == pSet->GetIndex();
            }
        }
    }
    const char* name = GetNameField();
    return name != nullptr && std::strcmp(name, className) == 0;
}

bool CToken::IsItA(const char* fieldName, const char* className) {
    const int i = Internals::FieldIndex(this, fieldName);
    const FieldSlot* pSlot = mlds::SlotAt(this, i);
    if (pSlot == nullptr || className == nullptr) return false;
    CField* pField = Internals::Field(Internals::StreamOf(this), i);
    if (pField == nullptr) return false;
    if (CFieldValueSet* pSet = pField->GetFieldValueSet(className)) {
        return pSlot->value == pSet->GetIndex();
    }
    return pField->GetValueIndex(className) == pSlot->value;
}

bool CToken::IsItA(int value) {
    const FieldSlot* pSlot = mlds::SlotAt(this, 0);
    return pSlot != nullptr && pSlot->value == value;
}

bool CToken::TestFieldValue(const char*, const char*) {
    return false;
}
