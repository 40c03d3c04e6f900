// The tiers of this host: a container with its streams and their fields.
#ifndef TRANSCRIBE_TIERS_H
#define TRANSCRIBE_TIERS_H

#include "mlds/mlds.h"

namespace transcribe {

/// The tiers of one utterance:
///
/// - "RawInput", the characters as they were typed;
/// - "inp", what matters of them: lower case letters, digits and marks of a pause;
/// - "word", the words and numbers in it;
/// - "phone", the sounds;
/// - "syl", the syllables;
/// - "time", how long phones and pauses last, in milliseconds.
class Tiers {
public:
    /// Declares the streams and their fields. All streams are empty.
    Tiers();
    Tiers(const Tiers&) = delete;
    Tiers& operator=(const Tiers&) = delete;

    CPlexa plexa;
    CStream* const pRaw;
    CStream* const pInp;
    CStream* const pWord;
    CStream* const pPhone;
    CStream* const pSyl;
    CStream* const pTime;

private:
    CStream* Add(const char* name);
};

}  // namespace transcribe

#endif
