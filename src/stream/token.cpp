// Tokens: building, setting and reading field values.
#include "mlds/token.h"

#include <cstdio>
#include <cstring>

#include "platform/numbertext.h"
#include "report/report.h"
#include "stream/derivation.h"
#include "stream/fieldslots.h"

using mlds::FieldSlot;
using mlds::FieldSlots;
using mlds::Internals;

namespace {

// One slot per field of the stream, every value 0. Null for a stream without fields.
FieldSlots* EmptySlots(const CStream* pStream) {
    const int n = pStream != nullptr ? Internals::NumFields(pStream) : 0;
    if (n == 0) return nullptr;
    FieldSlots* pSlots = FieldSlots::Make(static_cast<std::uint32_t>(n));
    if (pSlots == nullptr) return nullptr;
    for (int i = 0; i < n; ++i) {
        pSlots->slots()[i] = {Internals::Field(pStream, i)->GetFieldType(), 0};
    }
    return pSlots;
}

FieldSlots* CopyOfSlots(FieldSlots* pSource) {
    if (pSource == nullptr) return nullptr;
    FieldSlots* pSlots = FieldSlots::Make(pSource->nSlots);
    if (pSlots == nullptr) return nullptr;
    std::memcpy(pSlots->slots(), pSource->slots(), pSource->nSlots * sizeof(FieldSlot));
    return pSlots;
}

void ApplyNameDefaults(CField* pNameField, FieldSlots* pSlots, int nameValue) {
    NameSpcDefVal** ppEntries = pNameField->GetppNameSpecificDefaultValues();
    for (int k = 0, n = pNameField->GetnumNSDV(); k < n; ++k) {
        if (ppEntries[k] == nullptr || ppEntries[k]->nNameValueIndex != nameValue) continue;
        const NameSpcDefVal& entry = *ppEntries[k];
        const auto target = static_cast<std::uint32_t>(entry.nFieldIndex);
        if (entry.nValueType == 2) {
            // The tag goes to the slot at the entry's own position, not to the target's: existing
            // schemas rely on where it lands.
            const auto position = static_cast<std::uint32_t>(k);
            if (position < pSlots->nSlots) pSlots->slots()[position].type = fvFloat;
        } else if (entry.nValueType != 1) {
            continue;
        }
        if (target < pSlots->nSlots) pSlots->slots()[target].value = entry.nValue;
    }
}

int CharValue(char c) {
    return static_cast<signed char>(c);
}

}  // namespace

CToken::CToken(CStream* pStream)
    : CTokenBase(pStream), m_pSlots(EmptySlots(pStream)), m_szNumber{}, m_szChar{}, m_nOwners(0) {
    m_type = otToken;
}

CToken::CToken(CStream* pStream, const char* name) : CToken(pStream) {
    if (m_pSlots == nullptr || name == nullptr) return;
    const int n = pStream->GetFieldIndex("name");
    if (n < 0) return;
    CField* pField = Internals::Field(pStream, n);
    FieldSlot& slot = m_pSlots->slots()[n];
    if (slot.type == fvInt) {
        slot.value = mlds::platform::TextToInt(name);
        return;
    }
    m_cDisplay = name[0];
    slot.value = slot.type == fvChar ? CharValue(name[0]) : pField->GetValueIndex(name);
    const int value = slot.value;
    mlds::DeriveFields(pStream, m_pSlots, value);
    if (slot.type != fvChar) ApplyNameDefaults(pField, m_pSlots, value);
}

CToken::CToken(CToken* pSource)
    : CTokenBase(pSource != nullptr ? Internals::StreamOf(pSource) : nullptr,
                 pSource != nullptr ? Internals::SlotOf(pSource) : 0),
      m_pSlots(pSource != nullptr ? CopyOfSlots(pSource->m_pSlots) : nullptr),
      m_szNumber{},
      m_szChar{},
      m_nOwners(0) {
    m_type = otToken;
    if (pSource != nullptr) m_cDisplay = pSource->m_cDisplay;
}

CToken::CToken(const CToken& other) : CTokenBase(other), m_pSlots(other.m_pSlots), m_nOwners(0) {
    if (m_pSlots != nullptr) ++m_pSlots->nTokens;
    std::memcpy(m_szNumber, other.m_szNumber, sizeof m_szNumber);
    std::memcpy(m_szChar, other.m_szChar, sizeof m_szChar);
}

CToken& CToken::operator=(const CToken& other) {
    if (this == &other) return *this;
    if (Internals::IsLinked(this)) {
        // Its place and its stream are its own, and so is the number of its values.
        TokenCopy(const_cast<CToken*>(&other));
        return *this;
    }
    CTokenBase::operator=(other);
    FieldSlots::LetGo(m_pSlots);
    m_pSlots = other.m_pSlots;
    if (m_pSlots != nullptr) ++m_pSlots->nTokens;
    std::memcpy(m_szNumber, other.m_szNumber, sizeof m_szNumber);
    std::memcpy(m_szChar, other.m_szChar, sizeof m_szChar);
    return *this;
}

CToken::~CToken() {
    FieldSlots::LetGo(m_pSlots);
}

char* CToken::GetNameField() {
    return GetFieldValueString(0);
}

int CToken::GetFieldValueIndex(const char* fieldName) {
    return GetFieldValueIndex(Internals::FieldIndex(this, fieldName));
}

int CToken::GetFieldValueIndex(int i) {
    const FieldSlot* pSlot = mlds::SlotAt(this, i);
    return pSlot != nullptr ? pSlot->value : -1;
}

char* CToken::GetFieldValueString(const char* fieldName) {
    return GetFieldValueString(Internals::FieldIndex(this, fieldName));
}

char* CToken::GetFieldValueString(int i) {
    const FieldSlot* pSlot = mlds::SlotAt(this, i);
    if (pSlot == nullptr) return nullptr;
    CField* pField = Internals::Field(Internals::StreamOf(this), i);
    if (pField == nullptr) return nullptr;  // of a container that is gone
    if (pField->GetFieldType() == fvChar) {
        m_szChar[0] = static_cast<char>(pSlot->value);
        m_szChar[1] = '\0';
        return m_szChar;
    }
    if (pField->GetPossibleValues()) return pField->GetPossibleValues(pSlot->value);
    if (pSlot->type == fvInt) {
        std::snprintf(m_szNumber, sizeof m_szNumber, "%d", pSlot->value);
        return m_szNumber;
    }
    // A float, too, is shown by its bits read as an integer.
    return mlds::platform::_gcvt(pSlot->value, 4, m_szNumber);
}

int CToken::GetFieldValueInt(const char* fieldName) {
    return GetFieldValueIndex(fieldName);
}

int CToken::GetFieldValueInt(int i) {
    return GetFieldValueIndex(i);
}

void CToken::SetFieldValue(int i, int value) {
    FieldSlot* pSlot = mlds::SlotAt(this, i);
    if (pSlot == nullptr) return;
    CStream* pStream = Internals::StreamOf(this);
    pSlot->value = value;
    if (i == 0) {
        m_cDisplay = static_cast<char>(value);
        mlds::DeriveFields(pStream, m_pSlots, value);
    }
    if (Internals::PlexaOf(pStream) == nullptr) return;
    if (GetPrevStreamObj() != nullptr || GetNextStreamObj() != nullptr) {
        mlds::ReportTokenChanged(Internals::PlexaOf(pStream), this);
    }
}

void CToken::SetFieldValue(int i, const char* text) {
    if (text == nullptr || mlds::SlotAt(this, i) == nullptr) return;
    const char first = text[0];
    CField* pField = Internals::Field(Internals::StreamOf(this), i);
    if (pField == nullptr) return;
    switch (pField->GetFieldType()) {
        case fvChar: SetFieldValue(i, CharValue(first)); break;
        case fvInt: SetFieldValue(i, mlds::platform::TextToInt(text)); break;
        default:
            if (const int value = pField->GetValueIndex(text); value >= 0) {
                SetFieldValue(i, value);
            }
    }
    m_cDisplay = first;
}

void CToken::SetFieldValue(const char* fieldName, int value) {
    SetFieldValue(Internals::FieldIndex(this, fieldName), value);
}

void CToken::SetFieldValue(const char* fieldName, const char* text) {
    SetFieldValue(Internals::FieldIndex(this, fieldName), text);
}

void CToken::ResetFieldValuesToDefault() {
    for (int i = 0, n = mlds::NumSlots(this); i < n; ++i) {
        CField* pField = Internals::Field(Internals::StreamOf(this), i);
        if (pField == nullptr) return;
        SetFieldValue(i, *static_cast<std::int32_t*>(pField->GetDefaultValue()));
    }
}
