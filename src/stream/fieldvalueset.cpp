// Field value sets: ranges and single values, included and excluded.
#include <cstring>
#include <initializer_list>

#include "mlds/field.h"
#include "stream/derivation.h"
#include "stream/fixedtext.h"
#include "stream/sharedblock.h"

CFieldValueSet::CFieldValueSet(CField* pField, int index)
    : m_szName{},
      m_nIndex(index),
      m_bUniversal(false),
      m_pField(pField),
      m_nIncludeRanges(0),
      m_nExcludeRanges(0),
      m_nIncludeValues(0),
      m_nExcludeValues(0),
      m_pIncludeLows(nullptr),
      m_pIncludeHighs(nullptr),
      m_pExcludeLows(nullptr),
      m_pExcludeHighs(nullptr),
      m_IncludeValues{},
      m_ExcludeValues{},
      m_pListedIn(nullptr),
      m_nUsers(1) {}

CFieldValueSet::CFieldValueSet(const CFieldValueSet& other)
    : CFieldValueSet(other.m_pField, other.m_nIndex) {
    *this = other;
}

CFieldValueSet& CFieldValueSet::operator=(const CFieldValueSet& other) {
    if (this == &other) return *this;
    Clear();
    std::memcpy(m_szName, other.m_szName, sizeof m_szName);
    m_nIndex = other.m_nIndex;
    m_bUniversal = other.m_bUniversal;
    m_pField = other.m_pField;
    m_nIncludeRanges = other.m_nIncludeRanges;
    m_nExcludeRanges = other.m_nExcludeRanges;
    m_nIncludeValues = other.m_nIncludeValues;
    m_nExcludeValues = other.m_nExcludeValues;
    m_pIncludeLows = mlds::ShareBlock(other.m_pIncludeLows);
    m_pIncludeHighs = mlds::ShareBlock(other.m_pIncludeHighs);
    m_pExcludeLows = mlds::ShareBlock(other.m_pExcludeLows);
    m_pExcludeHighs = mlds::ShareBlock(other.m_pExcludeHighs);
    std::memcpy(m_IncludeValues, other.m_IncludeValues, sizeof m_IncludeValues);
    std::memcpy(m_ExcludeValues, other.m_ExcludeValues, sizeof m_ExcludeValues);
    return *this;
}

CFieldValueSet::~CFieldValueSet() {
    Clear();
}

// A set of one of these names holds every value: as the last of a field, it catches what no other
// has. It stays so when it is renamed.
void CFieldValueSet::SetName(const char* name) {
    if (!mlds::SetFixedText(m_szName, name)) return;
    if (std::strcmp(m_szName, "undefined") != 0 && std::strcmp(m_szName, "undef") != 0) return;
    m_bUniversal = true;
    mlds::ForgetDerivedValues(m_pListedIn);
}

char* CFieldValueSet::GetName() {
    return m_szName;
}

int CFieldValueSet::GetIndex() {
    return m_nIndex;
}

void CFieldValueSet::Clear() {
    mlds::ForgetDerivedValues(m_pListedIn);
    m_nIncludeRanges = m_nExcludeRanges = m_nIncludeValues = m_nExcludeValues = 0;
    for (int** pp : {&m_pIncludeLows, &m_pIncludeHighs, &m_pExcludeLows, &m_pExcludeHighs}) {
        mlds::DropBlock(*pp);
        *pp = nullptr;
    }
}

namespace {

struct Ranges {
    int*& pLows;
    int*& pHighs;
    int& n;
};

// `bound(i)` gives the i-th of 2n bounds.
template <typename Bound>
void SetRanges(Ranges ranges, int n, Bound bound) {
    if (ranges.pLows != nullptr || ranges.pHighs != nullptr || n < 0) return;
    int* pLows = mlds::NewBlock<int>(static_cast<std::size_t>(n));
    int* pHighs = mlds::NewBlock<int>(static_cast<std::size_t>(n));
    if (pLows == nullptr || pHighs == nullptr) {
        mlds::DropBlock(pLows);
        mlds::DropBlock(pHighs);
        return;
    }
    for (int k = 0; k < n; ++k) {
        pLows[k] = bound(2 * k);
        pHighs[k] = bound(2 * k + 1);
    }
    ranges.pLows = pLows;
    ranges.pHighs = pHighs;
    ranges.n = n;
}

int ValueIndex(CField* pField, const char* value) {
    return pField != nullptr ? pField->GetValueIndex(value) : -1;
}

bool InRanges(const int* pLows, const int* pHighs, int n, int value) {
    for (int k = 0; k < n; ++k) {
        if (pLows[k] <= value && value <= pHighs[k]) return true;
    }
    return false;
}

bool InValues(const int* pValues, int n, int value) {
    for (int k = 0; k < n; ++k) {
        if (pValues[k] == value) return true;
    }
    return false;
}

}  // namespace

void CFieldValueSet::SetIncludeRanges(const char* const* bounds, int n) {
    if (bounds == nullptr) return;
    mlds::ForgetDerivedValues(m_pListedIn);
    SetRanges({m_pIncludeLows, m_pIncludeHighs, m_nIncludeRanges}, n,
              [&](int i) { return ValueIndex(m_pField, bounds[i]); });
}

void CFieldValueSet::SetIncludeRanges(const int* bounds, int n) {
    if (bounds == nullptr) return;
    mlds::ForgetDerivedValues(m_pListedIn);
    SetRanges({m_pIncludeLows, m_pIncludeHighs, m_nIncludeRanges}, n,
              [&](int i) { return bounds[i]; });
}

void CFieldValueSet::SetExcludeRanges(const char* const* bounds, int n) {
    if (bounds == nullptr) return;
    mlds::ForgetDerivedValues(m_pListedIn);
    SetRanges({m_pExcludeLows, m_pExcludeHighs, m_nExcludeRanges}, n,
              [&](int i) { return ValueIndex(m_pField, bounds[i]); });
}

void CFieldValueSet::SetExcludeRanges(const int* bounds, int n) {
    if (bounds == nullptr) return;
    mlds::ForgetDerivedValues(m_pListedIn);
    SetRanges({m_pExcludeLows, m_pExcludeHighs, m_nExcludeRanges}, n,
              [&](int i) { return bounds[i]; });
}

void CFieldValueSet::AddIncludeValue(const char* value) {
    AddIncludeValue(ValueIndex(m_pField, value));
}

void CFieldValueSet::AddIncludeValue(int value) {
    if (m_nIncludeValues == kMaxValues) return;
    m_IncludeValues[m_nIncludeValues++] = value;
    mlds::ForgetDerivedValues(m_pListedIn);
}

void CFieldValueSet::AddExcludeValue(const char* value) {
    AddExcludeValue(ValueIndex(m_pField, value));
}

void CFieldValueSet::AddExcludeValue(int value) {
    if (m_nExcludeValues == kMaxValues) return;
    m_ExcludeValues[m_nExcludeValues++] = value;
    mlds::ForgetDerivedValues(m_pListedIn);
}

bool CFieldValueSet::IsSetMember(int value) {
    if (m_bUniversal) return true;
    const bool bGivenByInclusion = m_nIncludeRanges > 0 || m_nIncludeValues > 0;
    const bool bIncluded =
        bGivenByInclusion ? InRanges(m_pIncludeLows, m_pIncludeHighs, m_nIncludeRanges, value) ||
                                InValues(m_IncludeValues, m_nIncludeValues, value)
                          : m_nExcludeRanges > 0 || m_nExcludeValues > 0;
    return bIncluded && !InRanges(m_pExcludeLows, m_pExcludeHighs, m_nExcludeRanges, value) &&
           !InValues(m_ExcludeValues, m_nExcludeValues, value);
}
