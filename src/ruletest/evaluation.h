// What the operators of test programs share: reading operands, positions, and walks.
//
// Every operator is called alike: the stream it works in, its instruction, the position, the
// direction, and a note to whoever called.
//   pp      the position: where the operator begins, and, if it matches, where it ended. One that
//           fails leaves it alone, so operands get a copy, `w`, which they may move.
//   pDone   1 once an operand has matched all that was to follow it too: the operators around it
//           have nothing left to do. Where an operand's word on that must not reach further (it was
//           only a condition, or one way among several), it gets a note of its own, `done`.
//
// A position is held as a CSyncMark*, but Field leaves it on a token where tokens touch. Positions
// are therefore only looked at as stream objects, and as marks after asking.
#ifndef MLDS_RULETEST_EVALUATION_H
#define MLDS_RULETEST_EVALUATION_H

#include "internals.h"
#include "platform/stackbounds.h"
#include "stream/scan.h"

namespace mlds {

inline PTestFuncReturnType Value(std::int32_t value) {
    PTestFuncReturnType result;
    result.value = value;
    return result;
}

inline PTestFuncReturnType Truth(bool bTruth) {
    return Value(bTruth ? 1 : 0);
}

inline bool IsTrue(PTestFuncReturnType result) {
    return (result.value & 0xFF) != 0;
}

inline ScanDirectionType Opposite(ScanDirectionType direction) {
    return direction == sdRight ? sdLeft : sdRight;
}

inline CStreamObj* ObjectAt(CSyncMark* position) {
    return reinterpret_cast<CStreamObj*>(position);
}

inline CSyncMark* PositionAt(CStreamObj* p) {
    return reinterpret_cast<CSyncMark*>(p);
}

/// The mark that an object is; null for tokens and null.
inline CSyncMark* AsMark(CStreamObj* p) {
    return p != nullptr && Internals::IsSyncMark(p) ? static_cast<CSyncMark*>(p) : nullptr;
}

inline CToken* AsToken(CStreamObj* p) {
    return p != nullptr && Internals::IsToken(p) ? static_cast<CToken*>(p) : nullptr;
}

inline CSyncMark* MarkAt(CSyncMark* position) {
    return AsMark(ObjectAt(position));
}

/// The first mark of the run of marks that begins at the position, in the direction, for which
/// `accepts` is true. Null if the run ends first, at a token or the end of the stream.
template <typename Accepts>
CSyncMark* FindInRun(CSyncMark* position, ScanDirectionType direction, bool bFenceCheck,
                     Accepts accepts) {
    CSyncMark* pMark = MarkAt(position);
    while (pMark != nullptr && !accepts(pMark)) {
        pMark = AsMark(NeighbourOf(pMark, direction, bFenceCheck));
    }
    return pMark;
}

// A test that has run this many instructions is going round in circles.
constexpr std::uint32_t kMostInstructions = 1u << 26;

}  // namespace mlds

// Every instruction counts; none runs when the test has ended.
inline bool CPlexaTest::MayRun() {
    if (++m_nExecuted <= mlds::kMostInstructions &&
        mlds::platform::StackPointer() >= m_nStackLimit) {
        return true;
    }
    End();
    return false;
}

inline void CPlexaTest::End() {
    m_bEnded = true;
    m_nExecuted = mlds::kMostInstructions;
}

#endif
