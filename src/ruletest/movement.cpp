// Movement into other streams, and tests of the boundary at the position.
#include "ruletest/evaluation.h"

using mlds::AsMark;
using mlds::IsTrue;
using mlds::MarkAt;
using mlds::Truth;

PTestFuncReturnType CPlexaTest::DoRightContextOp(CStream* pStream, int index, CSyncMark** pp,
                                                 ScanDirectionType direction, int* pDone) {
    return StepToContext(pStream, index, pp, direction, pDone, sdRight);
}

PTestFuncReturnType CPlexaTest::DoLeftContextOp(CStream* pStream, int index, CSyncMark** pp,
                                                ScanDirectionType direction, int* pDone) {
    return StepToContext(pStream, index, pp, direction, pDone, sdLeft);
}

// Only where the pattern ends matters, not whether it matches.
PTestFuncReturnType CPlexaTest::StepToContext(CStream* pStream, int index, CSyncMark** pp,
                                              ScanDirectionType direction, int* pDone,
                                              ScanDirectionType step) {
    if (Byte(index, 2) == 0 || Byte(index, 3) == 0) return Truth(false);
    CSyncMark* w = *pp;
    const int target = Evaluate(pStream, Byte(index, 2), &w, direction, pDone).value;
    w = *pp;
    Evaluate(pStream, Byte(index, 3), &w, direction, pDone);
    CSyncMark* pReached = FindContext(m_pPlexa->pStream(target), MarkAt(w), step);
    if (pReached == nullptr) return Truth(false);
    *pp = pReached;
    return Truth(true);
}

PTestFuncReturnType CPlexaTest::DoMoveRightOp(CStream* pStream, int index, CSyncMark** pp,
                                              ScanDirectionType direction, int* pDone) {
    return StepOverMarks(pStream, index, pp, direction, pDone, sdRight);
}

PTestFuncReturnType CPlexaTest::DoMoveLeftOp(CStream* pStream, int index, CSyncMark** pp,
                                             ScanDirectionType direction, int* pDone) {
    return StepOverMarks(pStream, index, pp, direction, pDone, sdLeft);
}

PTestFuncReturnType CPlexaTest::StepOverMarks(CStream* pStream, int index, CSyncMark** pp,
                                              ScanDirectionType direction, int* pDone,
                                              ScanDirectionType step) {
    CSyncMark* w = *pp;
    CStream* pTarget = pStream;
    if (Byte(index, 2) != 0) {
        pTarget = m_pPlexa->pStream(Evaluate(pStream, Byte(index, 2), &w, direction, pDone).value);
    }
    if (!IsTrue(Evaluate(pStream, Byte(index, 3), &w, direction, pDone))) return Truth(false);
    CSyncMark* pReached = m_pPlexa->Move(pTarget, MarkAt(w), step);
    if (pReached == nullptr) return Truth(false);
    *pp = pReached;
    return Truth(true);
}

PTestFuncReturnType CPlexaTest::DoTimeMoveRightOp(CStream* pStream, int index, CSyncMark** pp,
                                                  ScanDirectionType direction, int* pDone) {
    return StepInTime(pStream, index, pp, direction, pDone, sdRight);
}

PTestFuncReturnType CPlexaTest::DoTimeMoveLeftOp(CStream* pStream, int index, CSyncMark** pp,
                                                 ScanDirectionType direction, int* pDone) {
    return StepInTime(pStream, index, pp, direction, pDone, sdLeft);
}

PTestFuncReturnType CPlexaTest::StepInTime(CStream* pStream, int index, CSyncMark** pp,
                                           ScanDirectionType direction, int* pDone,
                                           ScanDirectionType step) {
    CSyncMark* w = *pp;
    if (!IsTrue(Evaluate(pStream, Byte(index, 2), &w, direction, pDone))) return Truth(false);
    CSyncMark* pHere = MarkAt(w);
    if (pHere == nullptr) return Truth(false);
    CSyncMark* pThere = pHere->GetCorrespondingSyncMark(m_pPlexa->GetDefaultTimeStream());
    if (pThere == nullptr) return Truth(false);
    CSyncMark* pReached = AsMark(mlds::NeighbourOf(pThere, step, true));
    if (pReached == nullptr) return Truth(false);
    *pp = pReached;
    return Truth(true);
}

// The next object must be a mark too.
PTestFuncReturnType CPlexaTest::DoAdjacencyTestOp(CStream* pStream, int index, CSyncMark** pp,
                                                  ScanDirectionType direction, int* pDone) {
    CStreamObj* pHere = mlds::ObjectAt(*pp);
    if (pHere == nullptr) return Truth(false);
    CSyncMark* pNext = AsMark(mlds::NeighbourOf(pHere, direction, true));
    if (pNext == nullptr) return Truth(false);
    return Continue(pStream, Byte(index, 4), pNext, pp, direction, pDone);
}

// The run of marks at the position must reach another stream. At the end of a sequence the word
// that it has matched is given even where it has not.
PTestFuncReturnType CPlexaTest::DoSyncTestOp(CStream* pStream, int index, CSyncMark** pp,
                                             ScanDirectionType direction, int* pDone) {
    if (Byte(index, 2) == 0) return Truth(false);
    CSyncMark* w = *pp;
    const int stream = Evaluate(pStream, Byte(index, 2), &w, direction, pDone).value;
    CSyncMark* pFound = mlds::FindInRun(*pp, direction, false, [&](CSyncMark* p) {
        return p->GetCorrespondingSyncMark(stream) != nullptr;
    });
    if (pFound == nullptr) {
        if (Byte(index, 4) == 0) *pDone = 1;
        return Truth(false);
    }
    return Continue(pStream, Byte(index, 4), pFound, pp, direction, pDone);
}
