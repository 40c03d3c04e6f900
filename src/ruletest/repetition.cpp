// Repetition and options.
#include "ruletest/evaluation.h"

using mlds::AsMark;
using mlds::Internals;
using mlds::IsTrue;
using mlds::MarkAt;
using mlds::ObjectAt;
using mlds::Truth;

// Finds how far a repetition may go: a mark variable, or the last object inside the stream. True
// with a null limit where a variable names none.
bool CPlexaTest::FindLimit(CStream* pStream, int link, ScanDirectionType direction,
                           CStreamObj** ppLimit) {
    *ppLimit = nullptr;
    int variable = -1;
    if (link != 0) {
        const int constant = Byte(link, 2);
        if (constant == 0) return false;
        variable = ConstantAt(constant);
    }
    if (variable < 0) {
        *ppLimit = direction == sdRight ? Internals::Prev(Internals::Last(pStream))
                                        : Internals::Next(Internals::First(pStream));
        return true;
    }
    CSyncMark* pLimit = AsMark(m_pVarList->GetDupVarPtr(variable));
    if (pLimit != nullptr && Internals::StreamOf(pLimit) != pStream) {
        pLimit = FindContext(pStream, pLimit, mlds::Opposite(direction));
    }
    *ppLimit = pLimit;
    return true;
}

namespace {

bool IsBehind(CStreamObj* pLimit, CSyncMark* position, ScanDirectionType direction) {
    CStreamObj* p = ObjectAt(position);
    return direction == sdRight ? pLimit->LeftOf(p) : pLimit->RightOf(p);
}

}  // namespace

// Lazy: first tries to finish, then to repeat once. Further repetitions come from the operand's own
// continuation, which leads back here.
PTestFuncReturnType CPlexaTest::DoStarOp(CStream* pStream, int index, CSyncMark** pp,
                                         ScanDirectionType direction, int* pDone) {
    CStreamObj* pLimit = nullptr;
    if (!FindLimit(pStream, Byte(index, 3), direction, &pLimit) || pLimit == nullptr) {
        return Truth(false);
    }
    if (IsBehind(pLimit, *pp, direction)) return Truth(false);
    if (Byte(index, 4) == 0) return Truth(true);
    CSyncMark* w = *pp;
    PTestFuncReturnType result = Evaluate(pStream, Byte(index, 4), &w, direction, pDone);
    if (!IsTrue(result)) {
        CSyncMark* pHere = MarkAt(*pp);
        if (pHere == nullptr || pHere->IsSynchronous(AsMark(pLimit))) return Truth(false);
        w = *pp;
        result = Evaluate(pStream, Byte(index, 2), &w, direction, pDone);
    }
    if (IsTrue(result)) *pp = w;
    return result;
}

// Greedy, by recursion; the deepest level decides.
PTestFuncReturnType CPlexaTest::DoStarsOp(CStream* pStream, int index, CSyncMark** pp,
                                          ScanDirectionType direction, int* pDone) {
    CStreamObj* pLimit = nullptr;
    if (!FindLimit(pStream, Byte(index, 3), direction, &pLimit)) return Truth(false);
    if (pLimit == nullptr) return Truth(true);
    if (IsBehind(pLimit, *pp, direction)) return Truth(false);
    if (Byte(index, 2) == 0) return Truth(false);  // no repetition of nothing, not even none
    CSyncMark* w = *pp;
    PTestFuncReturnType result = Evaluate(pStream, Byte(index, 2), &w, direction, pDone);
    if (*pDone != 1) {
        if (!IsTrue(result)) return EndStars(pStream, index, w, pp, direction, pDone);
        if (w != *pp) {
            result = Evaluate(pStream, index, &w, direction, pDone);
        } else {
            result = ContinueEmptyStars(pStream, index, &w, direction, pDone);
        }
    }
    if (IsTrue(result)) *pp = w;
    return result;
}

// The operand matched nothing: repeating it leads nowhere.
PTestFuncReturnType CPlexaTest::ContinueEmptyStars(CStream* pStream, int index, CSyncMark** pp,
                                                   ScanDirectionType direction, int* pDone) {
    const int next = Byte(index, 4);
    if (next == 0) {
        *pDone = 1;
        return Truth(false);
    }
    m_backup.Push(*pp, index);
    const PTestFuncReturnType result = Evaluate(pStream, next, pp, direction, pDone);
    m_backup.Pop();
    return result;
}

// The operand does not match here: the repetition is over.
PTestFuncReturnType CPlexaTest::EndStars(CStream* pStream, int index, CSyncMark* w, CSyncMark** pp,
                                         ScanDirectionType direction, int* pDone) {
    const int next = Byte(index, 4);
    if (m_backup.CheckLoop(*pp, index)) {
        // Further up, the rest is already being tried from this very place.
        if (next == 0) *pDone = 1;
        *pp = w;
        return Truth(true);
    }
    if (next == 0) {
        *pDone = 1;
        return Truth(true);
    }
    int done = 0;
    m_backup.Push(*pp, index);
    const PTestFuncReturnType result = Evaluate(pStream, next, &w, direction, &done);
    if (IsTrue(result)) {
        *pDone = done;
        *pp = w;
    }
    m_backup.Pop();
    return result;
}

// Greedy, by a loop, and never by itself at the end of a sequence.
PTestFuncReturnType CPlexaTest::DoStarsNoBkupOp(CStream* pStream, int index, CSyncMark** pp,
                                                ScanDirectionType direction, int* pDone) {
    if (Byte(index, 2) == 0) return Truth(false);
    CSyncMark* pLast = *pp;
    int done = 0;
    for (;;) {
        CSyncMark* w = pLast;
        // An operand that matches without moving would match for ever.
        if (!IsTrue(Evaluate(pStream, Byte(index, 2), &w, direction, &done)) || w == pLast) break;
        pLast = w;
    }
    if (Byte(index, 4) != 0) {
        return Continue(pStream, Byte(index, 4), pLast, pp, direction, pDone);
    }
    *pDone = 1;
    return Truth(false);
}

// Lazy: first without the operand.
PTestFuncReturnType CPlexaTest::DoQmarkOp(CStream* pStream, int index, CSyncMark** pp,
                                          ScanDirectionType direction, int* pDone) {
    const int next = Byte(index, 4);
    const PTestFuncReturnType without = Continue(pStream, next, *pp, pp, direction, pDone);
    if (IsTrue(without)) return without;
    CSyncMark* w = *pp;
    if (!IsTrue(Evaluate(pStream, Byte(index, 2), &w, direction, pDone))) return Truth(false);
    if (*pDone != 0) {
        *pp = w;
        return Truth(true);
    }
    return Continue(pStream, next, w, pp, direction, pDone);
}

// Greedy: first with the operand.
PTestFuncReturnType CPlexaTest::DoQmarksOp(CStream* pStream, int index, CSyncMark** pp,
                                           ScanDirectionType direction, int* pDone) {
    if (Byte(index, 2) == 0) return Truth(false);
    const int next = Byte(index, 4);
    CSyncMark* w = *pp;
    if (IsTrue(Evaluate(pStream, Byte(index, 2), &w, direction, pDone))) {
        if (next != 0 && *pDone != 0) {
            *pp = w;
            return Truth(true);
        }
        const PTestFuncReturnType with = Continue(pStream, next, w, pp, direction, pDone);
        if (IsTrue(with)) return with;
    }
    return Continue(pStream, next, *pp, pp, direction, pDone);
}
