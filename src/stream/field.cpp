// Fields: name, type, possible values, default, and the list of field value sets.
#include "mlds/field.h"

#include <bit>
#include <cstring>
#include <new>

#include "stream/derivation.h"
#include "stream/nameindex.h"

using mlds::Internals;

CField::CField(CStream* pStream)
    : m_pPool(nullptr),
      m_ppNameDefaults(nullptr),
      m_nNameDefaults(0),
      m_type(fvEnum),
      m_szName{},
      m_ppValues(nullptr),
      m_nValues(0),
      m_nDefault(-1),
      m_pStream(pStream),
      m_pSets{},
      m_nSets(0),
      m_bOwner(true),
      m_pIndex(nullptr),
      m_pDerived(nullptr) {}

CField::CField(const CField& other) : CField(other.m_pStream) {
    *this = other;
}

CField& CField::operator=(const CField& other) {
    if (this == &other) return *this;
    Release();
    m_pPool = other.m_pPool;
    m_ppNameDefaults = other.m_ppNameDefaults;
    m_nNameDefaults = other.m_nNameDefaults;
    m_type = other.m_type;
    std::memcpy(m_szName, other.m_szName, sizeof m_szName);
    m_ppValues = other.m_ppValues;
    m_nValues = other.m_nValues;
    m_nDefault = other.m_nDefault;
    m_pStream = other.m_pStream;
    std::memcpy(m_pSets, other.m_pSets, sizeof m_pSets);
    m_nSets = other.m_nSets;
    m_bOwner = false;
    m_pIndex = other.m_pIndex;
    return *this;
}

CField::~CField() {
    Release();
}

void CField::Release() {
    mlds::ForgetDerivedValues(this);
    if (!m_bOwner) return;
    for (int i = 0; i < m_nNameDefaults && m_ppNameDefaults != nullptr; ++i) {
        delete m_ppNameDefaults[i];
    }
    delete[] m_ppNameDefaults;
    delete m_pIndex;
    delete[] m_ppValues;
    delete[] m_pPool;
    for (int i = 0; i < m_nSets; ++i) delete m_pSets[i];
}

void CField::SetFieldName(const char* name) {
    if (name == nullptr || std::strlen(name) >= sizeof m_szName) return;
    std::strcpy(m_szName, name);
}

char* CField::GetFieldName() {
    return m_szName;
}

void CField::SetFieldType(FieldValType type) {
    m_type = type;
}

FieldValType CField::GetFieldType() {
    return m_type;
}

void CField::SetPossibleValues(const char* const* values, int n) {
    if (m_ppValues != nullptr || values == nullptr || n < 0 || !m_bOwner) return;
    std::size_t nBytes = 0;
    for (int i = 0; i < n; ++i) {
        if (values[i] == nullptr) return;
        nBytes += std::strlen(values[i]) + 1;
    }
    auto** ppValues = new (std::nothrow) char*[static_cast<std::size_t>(n)];
    auto* pPool = new (std::nothrow) char[nBytes];
    mlds::NameIndex* pIndex = nullptr;
    if (ppValues != nullptr && pPool != nullptr) {
        char* p = pPool;
        for (int i = 0; i < n; ++i) {
            ppValues[i] = std::strcpy(p, values[i]);
            p += std::strlen(p) + 1;
        }
        pIndex = mlds::NameIndex::Make(ppValues, n);
    }
    if (pIndex == nullptr) {
        delete[] ppValues;
        delete[] pPool;
        return;
    }
    m_ppValues = ppValues;
    m_pPool = pPool;
    m_pIndex = pIndex;
    m_nValues = n;
}

int CField::GetNumPossibleValues() {
    return m_nValues;
}

bool CField::GetPossibleValues() {
    return m_nValues > 0;
}

char* CField::GetPossibleValues(int i) {
    return i >= 0 && i < m_nValues ? m_ppValues[i] : nullptr;
}

int CField::GetValueIndex(const char* value) {
    return value != nullptr && m_nValues > 0 ? m_pIndex->Find(value) : -1;
}

void CField::SetDefaultValue(const char* value) {
    if (value != nullptr) m_nDefault = GetValueIndex(value);
}

void CField::SetDefaultValue(int value) {
    if (m_type == fvInt) m_nDefault = value;
}

void CField::SetDefaultValue(bool value) {
    if (m_type == fvBool) m_nDefault = value ? 1 : 0;
}

void CField::SetDefaultValue(float value) {
    if (m_type == fvFloat) m_nDefault = std::bit_cast<std::int32_t>(value);
}

void* CField::GetDefaultValue() {
    return &m_nDefault;
}

NameSpcDefVal** CField::GetppNameSpecificDefaultValues() {
    return m_ppNameDefaults;
}

int CField::GetnumNSDV() {
    return m_nNameDefaults;
}

CFieldValueSet* CField::CreateFieldValueSet(const char* name) {
    if (m_nSets == kMaxSets || !m_bOwner || m_pStream == nullptr) return nullptr;
    if (name == nullptr || std::strlen(name) > 29) return nullptr;
    // Whatever field this is, its sets are sets of names: of values of the stream's first field.
    auto* pSet = new (std::nothrow) CFieldValueSet(m_pStream->GetField(0), m_nSets);
    if (pSet == nullptr) return nullptr;
    pSet->SetName(name);
    Internals::ListedIn(pSet) = this;
    m_pSets[m_nSets++] = pSet;
    mlds::ForgetDerivedValues(this);
    return pSet;
}

int CField::GetNumFieldValueSets() {
    return m_nSets;
}

CFieldValueSet* CField::GetFieldValueSet(int i) {
    return i >= 0 && i < m_nSets ? m_pSets[i] : nullptr;
}

CFieldValueSet* CField::GetFieldValueSet(const char* name) {
    if (name == nullptr) return nullptr;
    for (int i = 0; i < m_nSets; ++i) {
        if (m_pSets[i] != nullptr && std::strcmp(m_pSets[i]->GetName(), name) == 0) {
            return m_pSets[i];
        }
    }
    return nullptr;
}
