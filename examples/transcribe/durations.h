// How long phones and pauses last.
#ifndef TRANSCRIBE_DURATIONS_H
#define TRANSCRIBE_DURATIONS_H

#include "tiers.h"

namespace transcribe {

/// Speaking rates, in per cent of the normal one.
constexpr int kSlowestRate = 25;
constexpr int kNormalRate = 100;
constexpr int kFastestRate = 400;

/// Fills "time": a token of so many milliseconds for every phone and every pause, tied to the
/// boundaries of "phone".
void FillTime(Tiers& tiers, int rate);

}  // namespace transcribe

#endif
