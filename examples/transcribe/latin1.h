// Text at the borders of the program: UTF-8 outside, Latin-1 inside, where a letter is one char.
#ifndef TRANSCRIBE_LATIN1_H
#define TRANSCRIBE_LATIN1_H

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace transcribe {

/// What is wrong with a text, and at which of its characters, counted from 1.
struct TextFault {
    std::size_t column;
    std::string what;
};

/// A text that was read, or the first fault that kept it from being read.
struct DecodedText {
    std::string latin1;
    std::optional<TextFault> fault;
    std::optional<TextFault> leftOut;  ///< the first character that was left out
    std::size_t nLeftOut = 0;
};

/// What to do with a character that Latin-1 does not have.
enum class Foreign { isFault, isLeftOut };

/// Reads UTF-8. Typographic characters that Latin-1 lacks become plain ones, invisible ones go, and
/// an accent that follows its letter is joined with it; what is then still outside Latin-1 is dealt
/// with as `foreign` says. Bytes that are no UTF-8 and control characters are always faults.
DecodedText FromUtf8(std::string_view utf8, Foreign foreign);

std::string ToUtf8(std::string_view latin1);

}  // namespace transcribe

#endif
