// The operands of comparisons and arithmetic: nearly all are constants and fields of the next
// token, which need no dispatch.
#ifndef MLDS_RULETEST_OPERANDS_H
#define MLDS_RULETEST_OPERANDS_H

#include "ruletest/evaluation.h"
#include "ruletest/opcodes.h"
#include "stream/fieldslots.h"

namespace mlds {

// Reads a field of the next token and moves past the token; -1 where there is none.
inline std::int32_t TakeField(int field, CSyncMark** pp, ScanDirectionType direction) {
    CStreamObj* pHere = ObjectAt(*pp);
    if (pHere == nullptr) return -1;
    CToken* pToken = AsToken(NearestOf(pHere, direction, otToken, true));
    if (pToken == nullptr) return -1;
    *pp = PositionAt(NeighbourOf(pToken, direction, true));
    const FieldSlot* pSlot = SlotAt(pToken, field);
    return pSlot != nullptr ? pSlot->value : -1;
}

}  // namespace mlds

inline std::int32_t CPlexaTest::Operand(CStream* pStream, int index, CSyncMark** pp,
                                        ScanDirectionType direction, int* pDone) {
    // What a test that has ended does not reach may not even be there.
    if (m_bEnded) return 0;
    if (m_pObserver == nullptr) {
        switch (static_cast<mlds::Opcode>(At(index)[0])) {
            case mlds::Opcode::Enum:
            case mlds::Opcode::ConstInt:
            case mlds::Opcode::Stream: return MayRun() ? ConstantAt(index) : 0;
            case mlds::Opcode::Field:
                return MayRun() ? mlds::TakeField(ConstantAt(index), pp, direction) : 0;
            default: break;
        }
    }
    return Evaluate(pStream, index, pp, direction, pDone).value;
}

inline bool CPlexaTest::EvaluatePair(CStream* pStream, int index, CSyncMark** pp,
                                     ScanDirectionType direction, int* pDone, std::int32_t* pLeft,
                                     std::int32_t* pRight) {
    if (Byte(index, 2) == 0 || Byte(index, 3) == 0) return false;
    *pLeft = Operand(pStream, Byte(index, 2), pp, direction, pDone);
    *pRight = Operand(pStream, Byte(index, 3), pp, direction, pDone);
    return true;
}

#endif
