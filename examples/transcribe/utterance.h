// From text to tiers.
#ifndef TRANSCRIBE_UTTERANCE_H
#define TRANSCRIBE_UTTERANCE_H

#include <string>

#include "letterrules.h"
#include "tiers.h"

namespace transcribe {

/// Empties the tiers and fills them from an utterance in Latin-1, spoken at a rate in per cent.
void Transcribe(Tiers& tiers, LetterRules& rules, const std::string& text, int rate);

}  // namespace transcribe

#endif
