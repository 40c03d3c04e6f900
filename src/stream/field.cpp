// Fields: name, type, possible values, default, and the list of field value sets.
#include "mlds/field.h"

#include <bit>
#include <cstring>
#include <new>

#include "stream/derivation.h"
#include "stream/fieldaccess.h"
#include "stream/fixedtext.h"
#include "stream/namedefaults.h"
#include "stream/nameindex.h"
#include "stream/sharedblock.h"

using mlds::Internals;

namespace {

constexpr std::size_t kMaxSetName = 29;  // the terminator is the thirtieth

}  // namespace

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
      m_pIndex(nullptr),
      m_pDerived(nullptr) {}

CField::CField(const CField& other) : CField(other.m_pStream) {
    *this = other;
}

// Copies share what was declared, by counting it; what is derived from the sets is found out anew.
CField& CField::operator=(const CField& other) {
    if (this == &other) return *this;
    Release();
    m_pPool = mlds::ShareBlock(other.m_pPool);
    m_ppNameDefaults = mlds::ShareBlock(other.m_ppNameDefaults);
    m_nNameDefaults = other.m_nNameDefaults;
    m_type = other.m_type;
    std::memcpy(m_szName, other.m_szName, sizeof m_szName);
    m_ppValues = mlds::ShareBlock(other.m_ppValues);
    m_nValues = other.m_nValues;
    m_nDefault = other.m_nDefault;
    m_pStream = other.m_pStream;
    std::memcpy(m_pSets, other.m_pSets, sizeof m_pSets);
    m_nSets = other.m_nSets;
    for (int i = 0; i < m_nSets; ++i) ++mlds::FieldAccess::Users(m_pSets[i]);
    m_pIndex = mlds::ShareBlock(other.m_pIndex);
    return *this;
}

CField::~CField() {
    Release();
}

// Ends this field's use of its blocks and sets; what no copy uses is gone then.
void CField::Release() {
    mlds::ForgetDerivedValues(this);
    mlds::DropNameDefaults(m_ppNameDefaults, m_nNameDefaults);
    mlds::DropBlock(m_pIndex);
    mlds::DropBlock(m_ppValues);
    mlds::DropBlock(m_pPool);
    for (int i = 0; i < m_nSets; ++i) {
        if (mlds::FieldAccess::ListedIn(m_pSets[i]) == this)
            mlds::FieldAccess::ListedIn(m_pSets[i]) = nullptr;
        if (--mlds::FieldAccess::Users(m_pSets[i]) == 0) delete m_pSets[i];
    }
}

void CField::SetFieldName(const char* name) {
    mlds::SetFixedText(m_szName, name);
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

// The texts go into one block, the pool, and an index finds them by name. All three exist or none:
// a field that half knows its values would give out indices without texts. A second call changes
// nothing, because tokens hold indices into the first list.
void CField::SetPossibleValues(const char* const* values, int n) {
    if (m_ppValues != nullptr || values == nullptr || n < 0) return;
    std::size_t nBytes = 0;
    for (int i = 0; i < n; ++i) {
        if (values[i] == nullptr) return;
        nBytes += std::strlen(values[i]) + 1;
    }
    auto** ppValues = mlds::NewBlock<char*>(static_cast<std::size_t>(n));
    auto* pPool = mlds::NewBlock<char>(nBytes);
    std::int32_t* pIndex = nullptr;
    if (ppValues != nullptr && pPool != nullptr) {
        char* p = pPool;
        for (int i = 0; i < n; ++i) {
            ppValues[i] = std::strcpy(p, values[i]);
            p += std::strlen(p) + 1;
        }
        pIndex = mlds::NameIndex::Make(ppValues, n);
    }
    if (pIndex == nullptr) {
        mlds::DropBlock(ppValues);
        mlds::DropBlock(pPool);
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
    if (value == nullptr || m_nValues <= 0) return -1;
    return mlds::NameIndex::Find(m_pIndex, m_ppValues, value);
}

void CField::SetDefaultValue(const char* value) {
    if (value != nullptr) m_nDefault = GetValueIndex(value);
}

// A default of another type than the field's is ignored: the host may set all that it has, and the
// field takes the one that fits.
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
    if (m_nSets == kMaxSets || m_pStream == nullptr) return nullptr;
    if (name == nullptr || std::strlen(name) > kMaxSetName) return nullptr;
    // Whatever field this is, its sets are sets of names: of values of the stream's first field.
    auto* pSet = new (std::nothrow) CFieldValueSet(m_pStream->GetField(0), m_nSets);
    if (pSet == nullptr) return nullptr;
    pSet->SetName(name);
    mlds::FieldAccess::ListedIn(pSet) = this;
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
