// Durations: the sum of field 0 over the tokens between two marks, and its rescaling.
#include "container/attempt.h"
#include "container/tokenrange.h"

using mlds::Internals;
using mlds::TokenRange;

namespace {

bool IsTimeStream(const CPlexa* pPlexa, const CStream* pTime) {
    return mlds::BelongsTo(pPlexa, pTime) && Internals::NumFields(pTime) > 0 &&
           Internals::Field(pTime, 0)->GetFieldType() == fvInt;
}

// False if the right mark does not lie right of the left one. Sums wrap at 32 bits.
bool Sum(const TokenRange& range, std::int32_t& sum) {
    std::uint32_t total = 0;
    const bool bMet = range.ForEach(
        [&](CToken* p) { total += static_cast<std::uint32_t>(p->GetFieldValueIndex(0)); });
    sum = static_cast<std::int32_t>(total);
    return bMet;
}

bool FitsInInt(std::int64_t value) {
    return value == static_cast<std::int32_t>(value);
}

}  // namespace

int CPlexa::Duration(CStream* pTime, CSyncMark* pLeft, int leftOffset, CSyncMark* pRight,
                     int rightOffset) {
    if (!IsTimeStream(this, pTime)) return -1;
    TokenRange range;
    if (!range.Find(this, pTime, pLeft, pRight)) return 0;
    std::int32_t sum = 0;
    if (!Sum(range, sum)) return -1;
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(sum) -
                                     static_cast<std::uint32_t>(leftOffset) +
                                     static_cast<std::uint32_t>(rightOffset));
}

bool CPlexa::SetDuration(CStream* pTime, CSyncMark* pLeft, CSyncMark* pRight, int newDuration) {
    constexpr std::int64_t kThousand = 1000;
    TokenRange range;
    std::int32_t old = 0;
    mlds::Attempt attempt(this);
    if (!IsTimeStream(this, pTime)) {
        return attempt.Refuse("the stream is none of this container whose field 0 is a number");
    }
    if (!range.Find(this, pTime, pLeft, pRight)) return attempt.Refuse(mlds::kNoCounterpart);
    if (!Sum(range, old)) return attempt.Refuse(mlds::kNoPlace);
    if (old == 0) return attempt.Refuse("the duration is 0");
    constexpr const char* kTooLong = "a duration in thousandths would not fit into 32 bits";
    if (!FitsInInt(newDuration * kThousand)) return attempt.Refuse(kTooLong);
    const std::int64_t scale = newDuration * kThousand / old;
    bool bFits = true;
    range.ForEach([&](CToken* p) { bFits = bFits && FitsInInt(p->GetFieldValueIndex(0) * scale); });
    if (!bFits) return attempt.Refuse(kTooLong);
    // What the divisions leave over is rounded up as soon as it comes to anything, so that the new
    // values add up to the scaled sum, rounded up.
    std::int64_t carry = 0;
    range.ForEach([&](CToken* p) {
        const std::int64_t scaled = p->GetFieldValueIndex(0) * scale;
        std::int64_t value = scaled / kThousand;
        carry += scaled % kThousand;
        if (carry > 0) {
            ++value;
            carry -= kThousand;
        }
        p->SetFieldValue(0, static_cast<std::int32_t>(value));
    });
    return true;
}

int CPlexa::Duration(CSyncMark* pLeft, CSyncMark* pRight) {
    return Duration(GetDefaultTimeStream(), pLeft, 0, pRight, 0);
}

int CPlexa::Duration(CSyncMark* pLeft, int leftOffset, CSyncMark* pRight) {
    return Duration(GetDefaultTimeStream(), pLeft, leftOffset, pRight, 0);
}

int CPlexa::Duration(CSyncMark* pLeft, CSyncMark* pRight, int rightOffset) {
    return Duration(GetDefaultTimeStream(), pLeft, 0, pRight, rightOffset);
}

int CPlexa::Duration(CSyncMark* pLeft, int leftOffset, CSyncMark* pRight, int rightOffset) {
    return Duration(GetDefaultTimeStream(), pLeft, leftOffset, pRight, rightOffset);
}

int CPlexa::Duration(CStream* pTime, CSyncMark* pLeft, CSyncMark* pRight) {
    return Duration(pTime, pLeft, 0, pRight, 0);
}

int CPlexa::Duration(CStream* pTime, CSyncMark* pLeft, int leftOffset, CSyncMark* pRight) {
    return Duration(pTime, pLeft, leftOffset, pRight, 0);
}

int CPlexa::Duration(CStream* pTime, CSyncMark* pLeft, CSyncMark* pRight, int rightOffset) {
    return Duration(pTime, pLeft, 0, pRight, rightOffset);
}

int CPlexa::Duration(const char* streamName, CSyncMark* pLeft, CSyncMark* pRight) {
    return Duration(pStream(streamName), pLeft, 0, pRight, 0);
}

int CPlexa::Duration(const char* streamName, CSyncMark* pLeft, int leftOffset, CSyncMark* pRight) {
    return Duration(pStream(streamName), pLeft, leftOffset, pRight, 0);
}

int CPlexa::Duration(const char* streamName, CSyncMark* pLeft, CSyncMark* pRight, int rightOffset) {
    return Duration(pStream(streamName), pLeft, 0, pRight, rightOffset);
}

int CPlexa::Duration(const char* streamName, CSyncMark* pLeft, int leftOffset, CSyncMark* pRight,
                     int rightOffset) {
    return Duration(pStream(streamName), pLeft, leftOffset, pRight, rightOffset);
}

bool CPlexa::SetDuration(CSyncMark* pLeft, CSyncMark* pRight, int newDuration) {
    return SetDuration(GetDefaultTimeStream(), pLeft, pRight, newDuration);
}
