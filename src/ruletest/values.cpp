// Values: constants, fields of tokens, arithmetic.
#include "ruletest/operands.h"

using mlds::Truth;
using mlds::Value;

PTestFuncReturnType CPlexaTest::DoEnumOp(CStream*, int index, CSyncMark**, ScanDirectionType,
                                         int*) {
    return Value(ConstantAt(index));
}

PTestFuncReturnType CPlexaTest::DoConstIntOp(CStream* pStream, int index, CSyncMark** pp,
                                             ScanDirectionType direction, int* pDone) {
    return DoEnumOp(pStream, index, pp, direction, pDone);
}

PTestFuncReturnType CPlexaTest::DoStreamOp(CStream* pStream, int index, CSyncMark** pp,
                                           ScanDirectionType direction, int* pDone) {
    return DoEnumOp(pStream, index, pp, direction, pDone);
}

PTestFuncReturnType CPlexaTest::DoFieldOp(CStream*, int index, CSyncMark** pp,
                                          ScanDirectionType direction, int*) {
    return Value(mlds::TakeField(ConstantAt(index), pp, direction));
}

PTestFuncReturnType CPlexaTest::DoNegateOp(CStream* pStream, int index, CSyncMark** pp,
                                           ScanDirectionType direction, int* pDone) {
    const PTestFuncReturnType operand = Evaluate(pStream, Byte(index, 2), pp, direction, pDone);
    return Value(static_cast<std::int32_t>(0u - static_cast<std::uint32_t>(operand.value)));
}

PTestFuncReturnType CPlexaTest::DoMultOp(CStream* pStream, int index, CSyncMark** pp,
                                         ScanDirectionType direction, int* pDone) {
    std::int32_t left = 0;
    std::int32_t right = 0;
    if (!EvaluatePair(pStream, index, pp, direction, pDone, &left, &right)) return Truth(false);
    return Value(static_cast<std::int32_t>(static_cast<std::uint32_t>(left) *
                                           static_cast<std::uint32_t>(right)));
}

PTestFuncReturnType CPlexaTest::DoAddOp(CStream* pStream, int index, CSyncMark** pp,
                                        ScanDirectionType direction, int* pDone) {
    std::int32_t left = 0;
    std::int32_t right = 0;
    if (!EvaluatePair(pStream, index, pp, direction, pDone, &left, &right)) return Truth(false);
    return Value(static_cast<std::int32_t>(static_cast<std::uint32_t>(left) +
                                           static_cast<std::uint32_t>(right)));
}

// A division without a result ends the whole test: no operator may make something of it.
PTestFuncReturnType CPlexaTest::DoDivOp(CStream* pStream, int index, CSyncMark** pp,
                                        ScanDirectionType direction, int* pDone) {
    std::int32_t left = 0;
    std::int32_t right = 0;
    if (!EvaluatePair(pStream, index, pp, direction, pDone, &left, &right)) return Truth(false);
    if (right == 0 || (left == INT32_MIN && right == -1)) {
        End();
        return Truth(false);
    }
    return Value(left / right);
}
