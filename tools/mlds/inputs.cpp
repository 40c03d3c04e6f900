// The utterances of texts.
#include "inputs.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unicode/uchar.h>
#include <unicode/utf8.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "program.h"

namespace mlds_program {

namespace {

constexpr std::size_t kBlock = 1 << 16;

UChar32 Next(std::string_view text, std::size_t& at) {
    const auto* pBytes = reinterpret_cast<const std::uint8_t*>(text.data());
    auto i = static_cast<std::int64_t>(at);
    const auto end = static_cast<std::int64_t>(text.size());
    UChar32 c = 0;
    U8_NEXT(pBytes, i, end, c);
    at = static_cast<std::size_t>(i);
    return c;
}

bool IsBlank(std::string_view text) {
    for (std::size_t i = 0; i < text.size();) {
        const UChar32 c = Next(text, i);
        if (c < 0 || !u_isUWhiteSpace(c)) return false;
    }
    return true;
}

std::size_t Characters(std::string_view text) {
    std::size_t n = 0;
    for (std::size_t i = 0; i < text.size(); ++n) Next(text, i);
    return n;
}

// Where the character behind the longest part begins; npos if the text is no longer than that.
std::size_t LimitOf(std::string_view text) {
    if (text.size() <= Inputs::kLongest) return std::string_view::npos;
    std::size_t limit = 0;
    std::size_t beforeAccents = 0;  // a letter is not cut off from its accents
    for (std::size_t n = 0; n < Inputs::kLongest; ++n) {
        if (limit >= text.size()) return std::string_view::npos;
        const std::size_t begin = limit;
        const UChar32 c = Next(text, limit);
        if (c < 0 || u_getCombiningClass(c) == 0) beforeAccents = begin;
    }
    if (limit >= text.size()) return std::string_view::npos;
    std::size_t behind = limit;
    const UChar32 c = Next(text, behind);
    const bool bAccent = c > 0 && u_getCombiningClass(c) != 0;
    return bAccent && beforeAccents > 0 ? beforeAccents : limit;
}

// How much of a line that is too long makes the next part: up to a space, behind a pause if there
// is one in its second half, because durations do not change by a cut there.
std::size_t PartLength(std::string_view text, std::size_t limit) {
    constexpr std::string_view kPauses = ".,:;?!";
    for (std::size_t i = limit; i-- > limit / 2 + 1;) {
        if (text[i] == ' ' && kPauses.find(text[i - 1]) != std::string_view::npos) return i + 1;
    }
    const std::size_t space = text.substr(0, limit).rfind(' ');
    return space != std::string_view::npos ? space + 1 : limit;
}

}  // namespace

Inputs::Inputs(std::vector<std::string> paths) : m_paths(std::move(paths)) {
    if (m_paths.empty()) m_paths.emplace_back("-");
    for (const std::string& path : m_paths) {
        struct stat about {};
        if (path == "-" || ::stat(path.c_str(), &about) != 0 || !S_ISREG(about.st_mode)) {
            m_nInAll = 0;
            return;
        }
        m_nInAll += static_cast<std::uint64_t>(about.st_size);
    }
}

Inputs::Inputs(OwnText own)
    : m_paths({"<text>"}),
      m_nOpened(1),
      m_bOpen(true),
      m_bAtEnd(true),
      m_buffer(std::move(own.text)),
      m_bText(true) {}

void Inputs::Close() {
    if (m_bOpen && m_descriptor > STDERR_FILENO) ::close(m_descriptor);
    m_bOpen = false;
}

// False behind the last file.
bool Inputs::OpenNext() {
    while (m_nOpened < m_paths.size()) {
        const std::string& path = m_paths[m_nOpened++];
        m_descriptor =
            path == "-" ? STDIN_FILENO : ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY);
        if (m_descriptor < 0) {
            Complain("cannot read " + path + ": " + Reason());
            m_bOk = false;
            continue;
        }
        m_bOpen = true;
        m_bAtEnd = false;
        m_buffer.clear();
        m_at = m_scanned = 0;
        m_line = 1;
        m_column = 1;
        m_bPartGiven = false;
        ReadMore();
        // The byte order mark of other systems.
        constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
        while (!m_bAtEnd && m_buffer.size() < kByteOrderMark.size() &&
               kByteOrderMark.starts_with(m_buffer)) {
            ReadMore();
        }
        if (m_buffer.starts_with(kByteOrderMark)) m_at = m_scanned = kByteOrderMark.size();
        return true;
    }
    return false;
}

void Inputs::ReadMore() {
    m_buffer.erase(0, m_at);
    m_scanned -= std::min(m_scanned, m_at);
    m_at = 0;
    if (m_descriptor == STDIN_FILENO && m_beforeWaiting) m_beforeWaiting();
    const std::size_t size = m_buffer.size();
    m_buffer.resize(size + kBlock);
    ssize_t n = 0;
    do {
        n = ::read(m_descriptor, m_buffer.data() + size, kBlock);
    } while (n < 0 && errno == EINTR);
    if (n < 0) {
        Complain("cannot read " + m_paths[m_nOpened - 1] + ": " + Reason());
        m_bOk = false;
    }
    if (n <= 0) m_bAtEnd = true;
    m_buffer.resize(size + static_cast<std::size_t>(std::max<ssize_t>(n, 0)));
    m_nRead += static_cast<std::uint64_t>(std::max<ssize_t>(n, 0));
}

// The rest of a line or a part of it, read as far as that takes. The view is good until the next
// call.
std::string_view Inputs::TakePart(bool& bLineEnds) {
    for (;;) {
        const std::size_t found = m_buffer.find('\n', std::max(m_scanned, m_at));
        const bool bFound = found != std::string::npos;
        std::string_view line = std::string_view(m_buffer).substr(m_at);
        if (bFound) line = line.substr(0, found - m_at);
        m_scanned = bFound ? found : m_buffer.size();
        // The last bytes of a block may be the half of a character.
        const bool bEnough = bFound || m_bAtEnd || line.size() > 4 * (kLongest + 1);
        if (!bEnough) {
            ReadMore();
            continue;
        }
        const std::size_t limit = LimitOf(line);
        bLineEnds = limit == std::string_view::npos;
        if (!bLineEnds) line = line.substr(0, PartLength(line, limit));
        m_at += line.size() + (bLineEnds && bFound ? 1 : 0);
        if (bLineEnds && line.ends_with('\r')) line.remove_suffix(1);
        return line;
    }
}

bool Inputs::Next(Utterance& utterance) {
    for (;;) {
        if (m_bOpen && m_at >= m_buffer.size() && m_bAtEnd) Close();
        if (!m_bOpen && !OpenNext()) return false;
        if (m_at >= m_buffer.size() && m_bAtEnd) continue;  // an empty file

        bool bLineEnds = false;
        const std::string_view text = TakePart(bLineEnds);
        const bool bBlank = IsBlank(text);
        if (!bBlank) {
            const std::string& path = m_paths[m_nOpened - 1];
            utterance.file = static_cast<int>(m_nOpened) - 1;
            utterance.name = path == "-" ? "<stdin>" : path;
            utterance.stem = m_bText ? "text" : path == "-" ? "stdin" : path;
            utterance.line = m_line;
            utterance.column = m_column;
            utterance.bContinues = m_bPartGiven;
            utterance.text = text;
        }
        m_bPartGiven = !bLineEnds && (m_bPartGiven || !bBlank);
        m_column = bLineEnds ? 1 : m_column + Characters(text);
        if (bLineEnds) ++m_line;
        if (!bBlank) return true;
    }
}

}  // namespace mlds_program
