// Variable lists: declaring variables, their duplicates during a test, commit and drop.
#include "mlds/varlist.h"

#include <cstring>

#include "container/listaccess.h"
#include "internals.h"
#include "report/messages.h"
#include "report/report.h"
#include "stream/fieldslots.h"
#include "stream/hostvariable.h"

using mlds::Internals;
using mlds::ListAccess;

CVarList::CVarList(CPlexa* pPlexa)
    : m_pPlexa(pPlexa),
      m_ppBound{},
      m_pDup{},
      m_szNames{},
      m_types{},
      m_bDirty{},
      m_nVars(0),
      m_bFences{},
      m_pNextList(nullptr),
      m_pPrevList(nullptr) {
    if (m_pPlexa == nullptr) return;
    if (const CVarList* pParent = Internals::TopVarList(m_pPlexa)) {
        std::memcpy(m_bFences, pParent->m_bFences, sizeof m_bFences);
    }
    Enlist();
    m_pPlexa->PushVarListStack(this);
    mlds::ReportListMade(m_pPlexa, this);
}

CVarList& CVarList::operator=(const CVarList& other) {
    if (this == &other) return *this;
    for (int i = 0; i < m_nVars; ++i) DropDuplicate(i);
    if (m_pPlexa != other.m_pPlexa) {
        if (m_pPlexa != nullptr) {
            ListAccess::DropFromStack(m_pPlexa, this);
            ListAccess::FollowTop(m_pPlexa);
            Delist();
            mlds::ForgetHandle(m_pPlexa, this);
        }
        m_pPlexa = other.m_pPlexa;
        if (m_pPlexa != nullptr) Enlist();
    }
    std::memcpy(m_ppBound, other.m_ppBound, sizeof m_ppBound);
    std::memcpy(m_pDup, other.m_pDup, sizeof m_pDup);
    std::memcpy(m_szNames, other.m_szNames, sizeof m_szNames);
    std::memcpy(m_types, other.m_types, sizeof m_types);
    std::memcpy(m_bDirty, other.m_bDirty, sizeof m_bDirty);
    m_nVars = other.m_nVars;
    std::memcpy(m_bFences, other.m_bFences, sizeof m_bFences);
    for (int i = 0; i < m_nVars; ++i) {
        if (m_types[i] == vtTokenPtr && m_pDup[i] != nullptr) {
            ++ListAccess::ExtraOwners(static_cast<CToken*>(m_pDup[i]));
        }
    }
    return *this;
}

CVarList::~CVarList() {
    for (int i = 0; i < m_nVars; ++i) DropDuplicate(i);
    if (m_pPlexa == nullptr) return;
    ListAccess::DropFromStack(m_pPlexa, this);
    ListAccess::FollowTop(m_pPlexa);
    Delist();
    mlds::ReportListGone(m_pPlexa, this);
    mlds::ForgetHandle(m_pPlexa, this);
}

// The container knows its lists, so that it can let go of those that outlive it.
void CVarList::Enlist() {
    CVarList*& pFirst = ListAccess::First(m_pPlexa);
    m_pPrevList = nullptr;
    m_pNextList = pFirst;
    if (pFirst != nullptr) pFirst->m_pPrevList = this;
    pFirst = this;
}

void CVarList::Delist() {
    (m_pPrevList != nullptr ? m_pPrevList->m_pNextList : ListAccess::First(m_pPlexa)) = m_pNextList;
    if (m_pNextList != nullptr) m_pNextList->m_pPrevList = m_pPrevList;
}

void mlds::ListAccess::LetGoOfContainer(CVarList* p) {
    for (int i = 0; i < p->m_nVars; ++i) p->DropDuplicate(i);
    p->Delist();
    p->m_pPlexa = nullptr;
}

void CVarList::AddSyncMarkPtr(const char* name, CSyncMark** pp) {
    AddVar(name, reinterpret_cast<CStreamObj**>(pp), vtSyncMarkPtr);
}

void CVarList::AddSyncMarkPtrPtr(const char* name, CSyncMark** pp) {
    AddVar(name, reinterpret_cast<CStreamObj**>(pp), vtSyncMarkPtrPtr);
}

void CVarList::AddTokenPtr(const char* name, CToken** pp) {
    AddVar(name, reinterpret_cast<CStreamObj**>(pp), vtTokenPtr);
}

void CVarList::AddVar(const char* name, CStreamObj** pp, VarType type) {
    if (name == nullptr || pp == nullptr || m_nVars == kMaxVars) return;
    const int i = m_nVars++;
    m_szNames[i] = name;
    m_ppBound[i] = pp;
    m_types[i] = type;
    ReportVar(mlds::msgVarAdded, i);
}

int CVarList::GetVarIndex(const char* name) {
    if (name == nullptr) return -1;
    for (int i = 0; i < m_nVars; ++i) {
        if (std::strcmp(m_szNames[i], name) == 0) return i;
    }
    return -1;
}

CStreamObj** CVarList::GetVarPtr(const char* name) {
    return GetVarPtr(GetVarIndex(name));
}

CStreamObj** CVarList::GetVarPtr(int i) {
    if (!HasVar(i)) return nullptr;
    ReportVar(mlds::msgVarUsed, i);
    return m_ppBound[i];
}

char* CVarList::GetVarName(int i) {
    if (!HasVar(i)) return nullptr;
    ReportVar(mlds::msgVarUsed, i);
    return const_cast<char*>(m_szNames[i]);
}

VarType CVarList::GetVarType(int i) {
    return HasVar(i) ? m_types[i] : static_cast<VarType>(-1);
}

VarType CVarList::GetVarType(const char* name) {
    return GetVarType(GetVarIndex(name));
}

int CVarList::GetNumVars() {
    return m_nVars;
}

bool CVarList::IsDirty(int i) {
    return HasVar(i) && m_bDirty[i];
}

bool CVarList::HasVarOfKind(int i, bool bToken) const {
    return HasVar(i) && (m_types[i] == vtTokenPtr) == bToken;
}

// The duplicate of a token variable may be shared with lists that this one was assigned to.
void CVarList::DropDuplicate(int i) {
    if (m_types[i] == vtTokenPtr && m_pDup[i] != nullptr) {
        auto* pToken = static_cast<CToken*>(m_pDup[i]);
        if (ListAccess::ExtraOwners(pToken) > 0) {
            --ListAccess::ExtraOwners(pToken);
        } else {
            delete pToken;
        }
    }
    m_pDup[i] = nullptr;
}

void CVarList::SetSyncMarkPtr(int i, CSyncMark* p) {
    if (!HasVarOfKind(i, false)) return;
    m_pDup[i] = p;
    m_bDirty[i] = true;
}

void CVarList::UnsetSyncMarkPtr(int i) {
    if (!HasVarOfKind(i, false)) return;
    m_pDup[i] = nullptr;
    m_bDirty[i] = false;
}

// A test must not change the bound token before it has held, so it works on a copy. The copy that
// is there already is written over: a test may set the same variable many times.
void CVarList::SetTokenPtr(int i, CToken* p) {
    if (m_pPlexa == nullptr || !HasVarOfKind(i, true) || p == nullptr) return;
    if (m_bDirty[i] && m_pDup[i] != nullptr) {
        static_cast<CToken*>(m_pDup[i])->TokenCopy(p);
        return;
    }
    CToken* pCopy = mlds::CopyOf(p);
    if (pCopy == nullptr) return;
    DropDuplicate(i);
    m_pDup[i] = pCopy;
    m_bDirty[i] = true;
}

void CVarList::UnsetTokenPtr(int i) {
    if (!HasVarOfKind(i, true)) return;
    DropDuplicate(i);
    m_bDirty[i] = false;
}

void CVarList::ReSetForUse() {
    if (m_pPlexa == nullptr) return;
    for (int i = 0; i < m_nVars; ++i) {
        m_bDirty[i] = false;
        if (m_types[i] == vtTokenPtr) {
            DropDuplicate(i);
        } else {
            m_pDup[i] = mlds::ReadHostVariable(m_ppBound[i]);
        }
    }
}

// What was set stays dirty until the next ReSetForUse(), so that the host can ask what a test
// bound.
void CVarList::DoAssignmentsAndClear(bool bAssign) {
    if (m_pPlexa == nullptr) return;
    for (int i = 0; i < m_nVars; ++i) {
        if (!m_bDirty[i]) continue;
        if (m_types[i] != vtTokenPtr) {
            if (bAssign) mlds::WriteHostVariable(m_ppBound[i], m_pDup[i]);
        } else if (bAssign && m_pDup[i] != nullptr) {
            CStreamObj* pBound = mlds::ReadHostVariable(m_ppBound[i]);
            if (pBound != nullptr && Internals::IsToken(pBound)) {
                static_cast<CToken*>(pBound)->TokenCopy(static_cast<CToken*>(m_pDup[i]));
            }
        }
        DropDuplicate(i);
    }
    if (bAssign) SendOutThisVarList(mlds::msgVarUsed);
}
