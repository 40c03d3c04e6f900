// Comparisons, and the pattern elements made of them.
#include "ruletest/operands.h"

using mlds::AsToken;
using mlds::IsTrue;
using mlds::NearestOf;
using mlds::ObjectAt;
using mlds::Truth;

// On a local position: what Eq reads is not consumed. The other comparisons consume.
PTestFuncReturnType CPlexaTest::DoEqOp(CStream* pStream, int index, CSyncMark** pp,
                                       ScanDirectionType direction, int* pDone) {
    CSyncMark* w = *pp;
    std::int32_t left = 0;
    std::int32_t right = 0;
    return Truth(EvaluatePair(pStream, index, &w, direction, pDone, &left, &right) &&
                 left == right);
}

PTestFuncReturnType CPlexaTest::DoNotEqOp(CStream* pStream, int index, CSyncMark** pp,
                                          ScanDirectionType direction, int* pDone) {
    std::int32_t left = 0;
    std::int32_t right = 0;
    return Truth(EvaluatePair(pStream, index, pp, direction, pDone, &left, &right) &&
                 left != right);
}

PTestFuncReturnType CPlexaTest::DoLtOp(CStream* pStream, int index, CSyncMark** pp,
                                       ScanDirectionType direction, int* pDone) {
    std::int32_t left = 0;
    std::int32_t right = 0;
    return Truth(EvaluatePair(pStream, index, pp, direction, pDone, &left, &right) && left < right);
}

PTestFuncReturnType CPlexaTest::DoLeOp(CStream* pStream, int index, CSyncMark** pp,
                                       ScanDirectionType direction, int* pDone) {
    std::int32_t left = 0;
    std::int32_t right = 0;
    return Truth(EvaluatePair(pStream, index, pp, direction, pDone, &left, &right) &&
                 left <= right);
}

PTestFuncReturnType CPlexaTest::DoGtOp(CStream* pStream, int index, CSyncMark** pp,
                                       ScanDirectionType direction, int* pDone) {
    std::int32_t left = 0;
    std::int32_t right = 0;
    return Truth(EvaluatePair(pStream, index, pp, direction, pDone, &left, &right) && left > right);
}

PTestFuncReturnType CPlexaTest::DoGeOp(CStream* pStream, int index, CSyncMark** pp,
                                       ScanDirectionType direction, int* pDone) {
    std::int32_t left = 0;
    std::int32_t right = 0;
    return Truth(EvaluatePair(pStream, index, pp, direction, pDone, &left, &right) &&
                 left >= right);
}

// An equality that is an element of a sequence: what its operands read is consumed.
PTestFuncReturnType CPlexaTest::DoNameEqOp(CStream* pStream, int index, CSyncMark** pp,
                                           ScanDirectionType direction, int* pDone) {
    CSyncMark* w = *pp;
    std::int32_t left = 0;
    std::int32_t right = 0;
    if (!EvaluatePair(pStream, index, &w, direction, pDone, &left, &right) || left != right) {
        return Truth(false);
    }
    return Continue(pStream, Byte(index, 4), w, pp, direction, pDone);
}

// Exactly one token, on which a condition may hold. Wherever the condition went, the sequence goes
// on behind the token.
PTestFuncReturnType CPlexaTest::DoAngleBrktOp(CStream* pStream, int index, CSyncMark** pp,
                                              ScanDirectionType direction, int* pDone) {
    CStreamObj* pHere = ObjectAt(*pp);
    if (pHere == nullptr) return Truth(false);
    CStreamObj* pToken = NearestOf(pHere, direction, otToken, true);
    if (pToken == nullptr) return Truth(false);
    if (Byte(index, 2) != 0) {
        CSyncMark* w = *pp;
        int done = 0;
        if (!IsTrue(Evaluate(pStream, Byte(index, 2), &w, direction, &done))) return Truth(false);
    }
    // No fence holds a token, so the condition has no say in what comes behind it.
    CSyncMark* pBeyond = mlds::AsMark(NearestOf(pToken, direction, otSyncMark, true));
    return Continue(pStream, Byte(index, 4), pBeyond, pp, direction, pDone);
}

// The field of the token that a variable holds.
PTestFuncReturnType CPlexaTest::DoTokenValOp(CStream*, int index, CSyncMark**, ScanDirectionType,
                                             int*) {
    if (Byte(index, 1) == 0) return Truth(false);
    CToken* pToken = TokenOf(ConstantAt(Byte(index, 1)));
    if (pToken == nullptr) return Truth(false);
    return mlds::Value(pToken->GetFieldValueIndex(Byte(index, 2)));
}
