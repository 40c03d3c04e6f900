// Syllables and stress.
#ifndef TRANSCRIBE_SYLLABLES_H
#define TRANSCRIBE_SYLLABLES_H

#include "tiers.h"

namespace transcribe {

/// Fills "syl" from the phones of every word. The stressed syllable and its vowel get stress:1.
void FillSyl(Tiers& tiers);

}  // namespace transcribe

#endif
