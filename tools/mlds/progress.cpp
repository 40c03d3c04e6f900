// How far a long run has come.
#include "progress.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <iostream>

#include "mlds/io/width.h"

namespace mlds_program {

namespace {

constexpr auto kPatience = std::chrono::seconds(1);
constexpr auto kPause = std::chrono::milliseconds(200);
constexpr std::size_t kBar = 30;

std::size_t TerminalWidth() {
    winsize size{};
    const bool bKnown = ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return bKnown ? size.ws_col : 80;
}

}  // namespace

Progress::Progress()
    : m_bOn(::isatty(STDERR_FILENO) == 1 && ::isatty(STDOUT_FILENO) != 1),
      m_next(Clock::now() + kPatience) {}

void Progress::Show(std::uint64_t nDone, std::uint64_t nInAll, const std::string& place) {
    if (!m_bOn) return;
    const Clock::time_point now = Clock::now();
    if (now < m_next) return;
    m_next = now + kPause;
    std::string line;
    if (nInAll > 0) {
        const std::uint64_t n = std::min(nDone, nInAll);
        const auto nFull = static_cast<std::size_t>(n * kBar / nInAll);
        line = '[' + std::string(nFull, '#') + std::string(kBar - nFull, ' ') + "] " +
               std::to_string(n * 100 / nInAll) + " %  ";
    }
    line = mlds::io::CutColumns(mlds::io::Cleaned(line + place), 0, TerminalWidth() - 1);
    // The rest of what stood there goes.
    std::cerr << '\r' << line << "\x1b[K" << std::flush;
    m_bDrawn = true;
}

void Progress::Clear() {
    if (!m_bDrawn) return;
    std::cerr << "\r\x1b[K" << std::flush;
    m_bDrawn = false;
}

}  // namespace mlds_program
