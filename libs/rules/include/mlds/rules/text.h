// What a text may have wrong with it.
#ifndef MLDS_RULES_TEXT_H
#define MLDS_RULES_TEXT_H

#include <cstddef>
#include <string>

namespace mlds::rules {

/// What to do with a character that the language does not know: leave it out, keep an empty place
/// for it, or not do the text at all.
enum class Unknown { skip, keep, error };

/// What is wrong with a text: bytes that are no UTF-8, a character that is not known.
struct TextFault {
    std::size_t column = 1;  ///< in characters as typed, from 1
    std::string what;
};

}  // namespace mlds::rules

#endif
