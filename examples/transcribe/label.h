// What people see of a token.
#ifndef TRANSCRIBE_LABEL_H
#define TRANSCRIBE_LABEL_H

#include <string>

#include "interval.h"
#include "tiers.h"

namespace transcribe {

/// The phones between two marks of any tiers, an apostrophe in front of a stressed vowel.
std::string Phones(Tiers& tiers, CSyncMark* pFrom, CSyncMark* pTo);

/// The letters of a word, the phones of a syllable; else the token's name. Empty without a token.
/// In Latin-1, like all text inside.
std::string LabelOf(Tiers& tiers, const Interval& interval);

}  // namespace transcribe

#endif
