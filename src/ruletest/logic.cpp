// Alternation, conjunction, negation, sequence.
#include "ruletest/evaluation.h"

using mlds::IsTrue;
using mlds::Truth;

// The first alternative that matches wins; an absent second one matches where the Or began.
PTestFuncReturnType CPlexaTest::DoOrOp(CStream* pStream, int index, CSyncMark** pp,
                                       ScanDirectionType direction, int* pDone) {
    const Operands links = OperandsOf(index, direction);
    if (links.first != 0) {
        CSyncMark* w = *pp;
        const PTestFuncReturnType result = Evaluate(pStream, links.first, &w, direction, pDone);
        if (IsTrue(result)) {
            *pp = w;
            return result;
        }
    }
    if (links.second == 0) return Truth(true);
    CSyncMark* w = *pp;
    const PTestFuncReturnType result = Evaluate(pStream, links.second, &w, direction, pDone);
    if (IsTrue(result)) *pp = w;
    return result;
}

// Both operands match from the same place; the second says where the And ends.
PTestFuncReturnType CPlexaTest::DoAndOp(CStream* pStream, int index, CSyncMark** pp,
                                        ScanDirectionType direction, int* pDone) {
    const Operands links = OperandsOf(index, direction);
    CSyncMark* w = *pp;
    if (links.first != 0 && !IsTrue(Evaluate(pStream, links.first, &w, direction, pDone))) {
        return Truth(false);
    }
    w = *pp;
    if (links.second != 0 && !IsTrue(Evaluate(pStream, links.second, &w, direction, pDone))) {
        return Truth(false);
    }
    *pp = w;
    return Truth(true);
}

PTestFuncReturnType CPlexaTest::DoNotOp(CStream* pStream, int index, CSyncMark** pp,
                                        ScanDirectionType direction, int* pDone) {
    if (Byte(index, 2) == 0) return Truth(false);
    CSyncMark* w = *pp;
    int done = 0;
    if (IsTrue(Evaluate(pStream, Byte(index, 2), &w, direction, &done))) return Truth(false);
    const int next = Byte(index, 4);
    // At the end of a sequence the position stays where the operand left it; before a continuation
    // it goes back.
    return Continue(pStream, next, next == 0 ? w : *pp, pp, direction, pDone);
}

// The second element begins where the first ended, unless the first has already matched all the
// rest.
PTestFuncReturnType CPlexaTest::DoAdjOp(CStream* pStream, int index, CSyncMark** pp,
                                        ScanDirectionType direction, int* pDone) {
    const Operands links = OperandsOf(index, direction);
    CSyncMark* w = *pp;
    if (links.first != 0 && !IsTrue(Evaluate(pStream, links.first, &w, direction, pDone))) {
        return Truth(false);
    }
    if (*pDone == 1) {
        *pp = w;
        return Truth(true);
    }
    PTestFuncReturnType second = Truth(true);
    if (links.second != 0) second = Evaluate(pStream, links.second, &w, direction, pDone);
    if (*pDone == 1) {
        if (IsTrue(second)) *pp = w;
        return second;
    }
    if (!IsTrue(second)) return Truth(false);
    return Continue(pStream, Byte(index, 4), w, pp, direction, pDone);
}
