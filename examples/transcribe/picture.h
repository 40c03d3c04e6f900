// The tiers as text, aligned under each other.
#ifndef TRANSCRIBE_PICTURE_H
#define TRANSCRIBE_PICTURE_H

#include <iosfwd>

#include "tiers.h"

namespace transcribe {

/// Prints every stream on a line of its own, in UTF-8, "|" for every mark. Synchronous marks stand
/// in one column. Long utterances are cut into blocks, between words where possible.
void PrintPicture(Tiers& tiers, std::ostream& out);

/// Prints the phones of all words in one line: "." between syllables, spaces between words.
void PrintPhones(Tiers& tiers, std::ostream& out);

}  // namespace transcribe

#endif
