// The interpreter's core: running a test, dispatch, limits, and the two structural operators.
#include "mlds/plexatest.h"
#include "platform/stackbounds.h"
#include "ruletest/evaluation.h"
#include "ruletest/opcodes.h"

using mlds::Internals;
using mlds::IsTrue;
using mlds::MarkAt;
using mlds::Truth;

namespace {

// Names of the header's bytes.
enum Header { headerStream = 1, headerLeft = 2, headerRight = 3, headerFocus = 4 };

}  // namespace

CPlexaTest::CPlexaTest(CPlexa* pPlexa)
    : m_pPlexa(pPlexa),
      m_pVarList(nullptr),
      m_pProgram(nullptr),
      m_nBase(0),
      m_pAdvanceMark(nullptr),
      m_pHeader(nullptr),
      m_pObserver(nullptr),
      m_nExecuted(0),
      m_bEnded(false),
      m_bRunning(false),
      m_nStackLimit(0) {}

void CPlexaTestObserver::BeforeTest(const char*, int) {}
void CPlexaTestObserver::AfterTest(bool) {}
void CPlexaTestObserver::BeforeInstruction(const CPlexaTestStep&) {}
void CPlexaTestObserver::AfterInstruction(const CPlexaTestStep&, PTestFuncReturnType) {}

CSyncMark* CPlexaTest::getSyncMarkItsOKtoAdvanceFrom() {
    return m_pAdvanceMark;
}

void CPlexaTest::SetObserver(CPlexaTestObserver* pObserver) {
    m_pObserver = pObserver;
}

bool CPlexaTest::Test(const char* name, unsigned char const (*const program)[5], int base) {
    // An observer that starts a test from within a test would pull this one's rug away.
    if (program == nullptr || base < 0 || m_bRunning || m_pPlexa == nullptr) return false;
    m_pProgram = program;
    m_nBase = base;
    m_pHeader = program + base;
    m_backup.ResetBackupControl();
    m_nExecuted = 0;
    m_bEnded = false;
    m_nStackLimit = mlds::platform::StackLimit();
    CPlexaTestObserver* pObserver = m_pObserver;
    // Observers may throw.
    struct Running {
        explicit Running(CPlexaTest* p) : pTest(p) { pTest->m_bRunning = true; }
        ~Running() {
            pTest->m_bRunning = false;
            pTest->m_pAdvanceMark = nullptr;
        }
        CPlexaTest* pTest;
    } running(this);
    if (pObserver != nullptr) pObserver->BeforeTest(name, base);
    const bool bHolds = RunTest();
    m_pAdvanceMark = nullptr;
    if (pObserver != nullptr) pObserver->AfterTest(bHolds);
    return bHolds;
}

CStream* CPlexaTest::StreamAt(int index) {
    const int stream = ConstantAt(index);
    const bool bThere = stream >= 0 && stream < Internals::NumStreams(m_pPlexa);
    return bThere ? Internals::Stream(m_pPlexa, stream) : nullptr;
}

bool CPlexaTest::RunTest() {
    const int streamLink = Byte(0, headerStream);
    CStream* pStream = streamLink != 0 ? StreamAt(streamLink) : nullptr;
    m_pVarList = Internals::TopVarList(m_pPlexa);
    if (m_pVarList == nullptr) return false;
    m_pVarList->ReSetForUse();
    const int focus = Byte(0, headerFocus);
    if (pStream == nullptr || focus == 0) return false;
    const ScanDirectionType direction = Byte(focus, 2) == 1 ? sdLeft : sdRight;
    CSyncMark* position = nullptr;
    int done = 0;
    const bool bFocus = IsTrue(Evaluate(pStream, focus, &position, direction, &done));
    if (!bFocus || m_bEnded) return false;
    CSyncMark* pEnd = MarkAt(position);
    if (pEnd != nullptr) pEnd = Internals::CounterpartOrSelf(pEnd, pStream);
    if (pEnd == nullptr) return false;
    // Both contexts are always evaluated, the one on the side where the focus came from last.
    bool bLeft = false;
    bool bRight = false;
    if (direction == sdLeft) {
        bLeft = ContextHolds(pStream, Byte(0, headerLeft), pEnd, sdLeft);
        bRight = ContextHolds(pStream, Byte(0, headerRight), pEnd, sdRight);
    } else {
        bRight = ContextHolds(pStream, Byte(0, headerRight), pEnd, sdRight);
        bLeft = ContextHolds(pStream, Byte(0, headerLeft), pEnd, sdLeft);
    }
    const bool bHolds = bLeft && bRight && !m_bEnded;
    m_pVarList->DoAssignmentsAndClear(bHolds);
    return bHolds;
}

bool CPlexaTest::ContextHolds(CStream* pStream, int link, CSyncMark* position,
                              ScanDirectionType direction) {
    if (link == 0) return true;
    int done = 0;
    return IsTrue(Evaluate(pStream, link, &position, direction, &done));
}

// Executes the instruction that a link leads to. A link that is absent and an opcode that stands
// for nothing fail.
PTestFuncReturnType CPlexaTest::Evaluate(CStream* pStream, int index, CSyncMark** pp,
                                         ScanDirectionType direction, int* pDone) {
    if (index == 0 || !MayRun()) return Truth(false);
    if (m_pObserver != nullptr) return EvaluateObserved(pStream, index, pp, direction, pDone);
    return Dispatch(pStream, index, pp, direction, pDone);
}

inline PTestFuncReturnType CPlexaTest::Dispatch(CStream* pStream, int index, CSyncMark** pp,
                                                ScanDirectionType direction, int* pDone) {
    switch (At(index)[0]) {
#define MLDS_OPCODE(number, name, handler, b1, b2, b3, b4) \
    case number:                                           \
        return handler(pStream, index, pp, direction, pDone);
#include "ruletest/opcodes.def"
#undef MLDS_OPCODE
        // Also 54, the value of a token variable's field: no rule compiler has ever emitted it.
        default: return Truth(false);
    }
}

PTestFuncReturnType CPlexaTest::EvaluateObserved(CStream* pStream, int index, CSyncMark** pp,
                                                 ScanDirectionType direction, int* pDone) {
    if (mlds::FindOpcode(At(index)[0]) == nullptr) return Truth(false);
    CPlexaTestObserver* pObserver = m_pObserver;
    CPlexaTestStep step = {index, At(index), pStream, mlds::ObjectAt(*pp), direction};
    pObserver->BeforeInstruction(step);
    const PTestFuncReturnType result = Dispatch(pStream, index, pp, direction, pDone);
    step.position = mlds::ObjectAt(*pp);
    pObserver->AfterInstruction(step, result);
    return result;
}

// What most operators end with: the rest of the sequence from W, or, where there is none, the word
// that the whole sequence has matched. Only success moves the caller's position.
PTestFuncReturnType CPlexaTest::Continue(CStream* pStream, int next, CSyncMark* w, CSyncMark** pp,
                                         ScanDirectionType direction, int* pDone) {
    if (next == 0) {
        *pDone = 1;
        *pp = w;
        return Truth(true);
    }
    const PTestFuncReturnType result = Evaluate(pStream, next, &w, direction, pDone);
    if (IsTrue(result)) *pp = w;
    return result;
}

// Crosses into another stream and comes back, both times through the marks at the position.
PTestFuncReturnType CPlexaTest::DoPlexaOp(CStream* pStream, int index, CSyncMark** pp,
                                          ScanDirectionType direction, int* pDone) {
    if (Byte(index, 1) == 0) return Truth(false);
    CSyncMark* w = *pp;
    const int target = Evaluate(pStream, Byte(index, 1), &w, direction, pDone).value;
    CStream* pTarget = m_pPlexa->pStream(target);
    if (pTarget == nullptr) return Truth(false);
    w = Cross(*pp, direction, pTarget);
    if (w == nullptr || Byte(index, 3) == 0) return Truth(false);
    int done = 0;
    if (!IsTrue(Evaluate(pTarget, Byte(index, 3), &w, direction, &done))) return Truth(false);
    w = Cross(w, direction, pStream);
    if (w == nullptr) return Truth(false);
    return Continue(pStream, Byte(index, 4), w, pp, direction, pDone);
}

CSyncMark* CPlexaTest::Cross(CSyncMark* position, ScanDirectionType direction, CStream* pTarget) {
    CSyncMark* pFound = mlds::FindInRun(position, direction, false, [&](CSyncMark* p) {
        return Internals::CounterpartOrSelf(p, pTarget) != nullptr;
    });
    return pFound != nullptr ? Internals::CounterpartOrSelf(pFound, pTarget) : nullptr;
}

// The container's search, whose steps count like instructions: over marks that nothing orders it
// would go on for hours. Null when they are used up, and then the test has ended.
CSyncMark* CPlexaTest::FindContext(CStream* pInto, CSyncMark* pMark, ScanDirectionType direction) {
    if (m_bEnded) return nullptr;
    std::uint64_t& stepsLeft = Internals::SearchSteps(m_pPlexa);
    const std::uint64_t before = mlds::kMostInstructions - m_nExecuted;
    stepsLeft = before;
    CSyncMark* pFound = m_pPlexa->Context(pInto, pMark, direction);
    m_nExecuted += static_cast<std::uint32_t>(before - stepsLeft);
    if (stepsLeft == 0) End();
    stepsLeft = UINT64_MAX;
    return m_bEnded ? nullptr : pFound;
}

// Runs its body, and notes where it ended as the place that fences do not hold.
PTestFuncReturnType CPlexaTest::DoAnchorOp(CStream* pStream, int index, CSyncMark** pp,
                                           ScanDirectionType direction, int* pDone) {
    const PTestFuncReturnType result = Evaluate(pStream, Byte(index, 1), pp, direction, pDone);
    m_pAdvanceMark = Byte(index, 3) == 0 ? MarkAt(*pp) : nullptr;
    return result;
}
