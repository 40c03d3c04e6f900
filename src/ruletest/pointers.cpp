// Rule variables in patterns: the boundary or token that a variable holds, and new bindings.
#include <memory>

#include "ruletest/evaluation.h"
#include "stream/fieldslots.h"
#include "stream/hostvariable.h"

using mlds::AsMark;
using mlds::AsToken;
using mlds::Internals;
using mlds::IsTrue;
using mlds::MarkAt;
using mlds::NearestOf;
using mlds::ObjectAt;
using mlds::Truth;

namespace {

constexpr int kWholeToken = 255;

}  // namespace

// What a variable holds may be gone: a rule deleted the mark, or the host never set its variable.
// It is therefore handed on as an address, told by the variable's type, and looked into only where
// it is compared with something.

// The token that a token variable holds: the binding of this test, or else the one from before it.
CToken* CPlexaTest::TokenOf(int variable) {
    if (!Internals::HasVarOfKind(m_pVarList, variable, true)) return nullptr;
    CStreamObj* p = m_pVarList->GetDupVarPtr(variable);
    if (p == nullptr) p = mlds::ReadHostVariable(m_pVarList->GetVarPtr(variable));
    return reinterpret_cast<CToken*>(p);
}

// The mark that a mark variable holds in this test.
CSyncMark* CPlexaTest::MarkOf(int variable) {
    if (!Internals::HasVarOfKind(m_pVarList, variable, false)) return nullptr;
    return mlds::PositionAt(m_pVarList->GetDupVarPtr(variable));
}

// The mark of the run at the position that stands where pMark does. Without a position yet, pMark
// itself.
CSyncMark* CPlexaTest::FindBoundary(CSyncMark* position, CSyncMark* pMark,
                                    ScanDirectionType direction) {
    if (position == nullptr) return pMark;
    return mlds::FindInRun(position, direction, true,
                           [&](CSyncMark* p) { return p->IsSynchronous(pMark); });
}

// The next token, if it is like pModel: in one field, or in all.
CToken* CPlexaTest::MatchToken(CToken* pModel, int selector, CSyncMark* position,
                               ScanDirectionType direction) {
    CStreamObj* pHere = ObjectAt(position);
    if (pHere == nullptr || pModel == nullptr) return nullptr;
    CToken* pToken = AsToken(NearestOf(pHere, direction, otToken, true));
    if (pToken == nullptr || !Internals::IsToken(pModel)) return nullptr;
    const bool bMatches = selector == kWholeToken ? pModel->TokenCompare(pToken)
                                                  : pModel->GetFieldValueIndex(selector) ==
                                                        pToken->GetFieldValueIndex(selector);
    return bMatches ? pToken : nullptr;
}

PTestFuncReturnType CPlexaTest::DoPtrOp(CStream*, int index, CSyncMark** pp,
                                        ScanDirectionType direction, int*) {
    CSyncMark* pMark = MarkOf(ConstantAt(index));
    if (pMark == nullptr) return Truth(false);
    CSyncMark* pFound = FindBoundary(*pp, pMark, direction);
    if (pFound == nullptr) return Truth(false);
    *pp = pFound;
    return Truth(true);
}

PTestFuncReturnType CPlexaTest::DoParentPtrOp(CStream* pStream, int index, CSyncMark** pp,
                                              ScanDirectionType direction, int* pDone) {
    if (Byte(index, 2) == 0) return Truth(false);
    const int variable = ConstantAt(Byte(index, 2));
    CSyncMark* w = nullptr;
    if (m_pVarList->GetVarType(variable) == vtTokenPtr) {
        CToken* pToken = MatchToken(TokenOf(variable), Byte(index, 3), *pp, direction);
        if (pToken == nullptr) return Truth(false);
        w = AsMark(NearestOf(pToken, direction, otSyncMark, true));
    } else {
        CSyncMark* pMark = MarkOf(variable);
        if (pMark == nullptr) return Truth(false);
        w = FindBoundary(*pp, pMark, direction);
    }
    if (w == nullptr) return Truth(false);
    return Continue(pStream, Byte(index, 4), w, pp, direction, pDone);
}

// Matches the next token without stepping over it, unless a continuation does.
PTestFuncReturnType CPlexaTest::DoTokOp(CStream* pStream, int index, CSyncMark** pp,
                                        ScanDirectionType direction, int* pDone) {
    CToken* pToken = MatchToken(TokenOf(Byte(index, 1)), Byte(index, 2), *pp, direction);
    if (pToken == nullptr) return Truth(false);
    if (Byte(index, 4) == 0) {
        *pDone = 1;
        return Truth(true);
    }
    CSyncMark* w = AsMark(NearestOf(pToken, direction, otSyncMark, true));
    if (w == nullptr) return Truth(false);
    return Continue(pStream, Byte(index, 4), w, pp, direction, pDone);
}

// Binds a mark variable to the position for the rest of the match. If that fails the old binding
// comes back, and the variable still counts as assigned.
PTestFuncReturnType CPlexaTest::DoAssignPtrOp(CStream* pStream, int index, CSyncMark** pp,
                                              ScanDirectionType direction, int* pDone) {
    const int variable = ShortAt(index);
    CSyncMark* pHere = MarkAt(*pp);
    if (!Internals::HasVarOfKind(m_pVarList, variable, false) || (*pp != nullptr && !pHere)) {
        return Truth(false);
    }
    CSyncMark* pOld = MarkOf(variable);
    m_pVarList->SetSyncMarkPtr(variable, pHere);
    const PTestFuncReturnType result = Continue(pStream, Byte(index, 4), *pp, pp, direction, pDone);
    if (!IsTrue(result)) m_pVarList->SetSyncMarkPtr(variable, pOld);
    return result;
}

// Binds a token variable to a copy of the token on the left, which a match to the right has just
// passed; a match to the left looks there too.
PTestFuncReturnType CPlexaTest::DoAssignTokOp(CStream* pStream, int index, CSyncMark** pp,
                                              ScanDirectionType direction, int* pDone) {
    const int variable = ShortAt(index);
    CStreamObj* pHere = ObjectAt(*pp);
    if (pHere == nullptr || !Internals::HasVarOfKind(m_pVarList, variable, true)) {
        return Truth(false);
    }
    CToken* pToken = AsToken(NearestOf(pHere, sdLeft, otToken, direction != sdRight));
    if (pToken == nullptr) return Truth(false);
    std::unique_ptr<CToken> pBackup;  // whatever is thrown
    CToken* pPending = AsToken(m_pVarList->GetDupVarPtr(variable));
    if (Byte(index, 4) != 0 && m_pVarList->IsDirty(variable) && pPending != nullptr) {
        pBackup.reset(mlds::CopyOf(pPending));
    }
    m_pVarList->SetTokenPtr(variable, pToken);
    const PTestFuncReturnType result = Continue(pStream, Byte(index, 4), *pp, pp, direction, pDone);
    if (!IsTrue(result)) {
        pPending = AsToken(m_pVarList->GetDupVarPtr(variable));
        if (pPending != nullptr && pBackup != nullptr) {
            pPending->TokenCopy(pBackup.get());
        } else if (pBackup == nullptr) {
            m_pVarList->UnsetTokenPtr(variable);
        }
    }
    return result;
}
