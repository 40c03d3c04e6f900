// From text to tiers.
#ifndef TRANSCRIBE_UTTERANCE_H
#define TRANSCRIBE_UTTERANCE_H

#include <string>

#include "letterrules.h"
#include "tiers.h"
#include "view.h"

namespace transcribe {

/// Empties the tiers and fills them from an utterance in Latin-1, spoken at a rate in per cent. The
/// view, if there is one, pauses after every rule and every tier.
void Transcribe(Tiers& tiers, LetterRules& rules, const std::string& text, int rate, View* pView);

}  // namespace transcribe

#endif
