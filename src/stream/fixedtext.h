// Names in fields of fixed size.
#ifndef MLDS_STREAM_FIXEDTEXT_H
#define MLDS_STREAM_FIXEDTEXT_H

#include <cstddef>
#include <cstring>

namespace mlds {

/// Copies a text that fits, terminator included; false, and the field as it was, for null and a
/// text that does not. The text may lie in the field itself.
template <std::size_t size>
bool SetFixedText(char (&field)[size], const char* text) {
    if (text == nullptr) return false;
    const std::size_t length = std::strlen(text);
    if (length >= size) return false;
    std::memmove(field, text, length + 1);
    return true;
}

}  // namespace mlds

#endif
