// Text that waits until it can be written.
#include "spool.h"

#include <cerrno>
#include <cstring>
#include <ostream>
#include <stdexcept>

namespace mlds::io {

namespace {

constexpr std::size_t kMostInMemory = 1 << 18;

[[noreturn]] void Fail(const char* what) {
    throw std::runtime_error(std::string("a temporary file cannot be ") + what + ": " +
                             std::strerror(errno != 0 ? errno : EIO));
}

}  // namespace

void Spool::Append(std::string_view text) {
    m_text += text;
    if (m_text.size() >= kMostInMemory) Flush();
}

void Spool::Flush() {
    errno = 0;
    if (!m_pFile) m_pFile.reset(std::tmpfile());
    if (!m_pFile) Fail("made");
    if (std::fwrite(m_text.data(), 1, m_text.size(), m_pFile.get()) != m_text.size()) {
        Fail("written");
    }
    m_text.clear();
}

void Spool::CopyTo(std::ostream& out) {
    if (m_pFile) {
        Flush();
        errno = 0;
        if (std::fflush(m_pFile.get()) != 0) Fail("written");
        if (std::fseek(m_pFile.get(), 0, SEEK_SET) != 0) Fail("read");
        char block[1 << 14];
        while (const std::size_t n = std::fread(block, 1, sizeof block, m_pFile.get())) {
            out.write(block, static_cast<std::streamsize>(n));
        }
        if (std::ferror(m_pFile.get())) Fail("read");
    }
    out << m_text;
}

}  // namespace mlds::io
