// A copy of a caller's text, for operations that may destroy what the text belongs to: the name of
// a token is a text of that token's own.
#ifndef MLDS_CONTAINER_TEXTCOPY_H
#define MLDS_CONTAINER_TEXTCOPY_H

#include <cstring>
#include <new>

namespace mlds {

class TextCopy {
public:
    explicit TextCopy(const char* text) {
        const std::size_t size = std::strlen(text) + 1;
        m_pText = size <= sizeof m_short ? m_short : new (std::nothrow) char[size];
        if (m_pText != nullptr) std::memcpy(m_pText, text, size);
    }
    ~TextCopy() {
        if (m_pText != m_short) delete[] m_pText;
    }
    TextCopy(const TextCopy&) = delete;
    TextCopy& operator=(const TextCopy&) = delete;

    /// Null when there was no memory for it.
    const char* get() const { return m_pText; }

private:
    char m_short[1024];
    char* m_pText;
};

}  // namespace mlds

#endif
