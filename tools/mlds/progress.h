// How far a long run has come, for people at a terminal.
#ifndef MLDS_PROGRAM_PROGRESS_H
#define MLDS_PROGRAM_PROGRESS_H

#include <chrono>
#include <cstdint>
#include <string>

namespace mlds_program {

/// One line on standard error that is drawn over and over. Nothing is seen of it in the first
/// second, where standard error is no terminal, or where results appear on the same one.
class Progress {
public:
    Progress();
    ~Progress() { Clear(); }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// `nInAll` is 0 where nobody knows.
    void Show(std::uint64_t nDone, std::uint64_t nInAll, const std::string& place);
    /// Takes the line away, so that something else can be written.
    void Clear();

private:
    using Clock = std::chrono::steady_clock;

    bool m_bOn;
    bool m_bDrawn = false;
    Clock::time_point m_next;
};

}  // namespace mlds_program

#endif
