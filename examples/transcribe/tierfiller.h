// Filling one tier from the boundaries of another.
#ifndef TRANSCRIBE_TIERFILLER_H
#define TRANSCRIBE_TIERFILLER_H

#include <array>
#include <span>
#include <string>
#include <vector>

#include "mlds/mlds.h"

namespace transcribe {

/// What goes into a tier next to a stretch of another: items in the notation that fills streams,
/// or nothing. The stretch ends at `pEnd` and begins where the one before it ended.
struct Segment {
    std::string items;
    CSyncMark* pEnd;
};

/// Fills an empty stream of an open utterance from left to right. Every boundary between two
/// segments becomes a mark of the stream, synchronous with the segments' own mark. While a filler
/// lives its variables are the current ones: tests that use others must not be run.
class TierFiller {
public:
    TierFiller(CPlexa& plexa, CStream* pStream);

    /// Adds segments that begin at `pBegin`, a mark that is already tied to the stream's last one
    /// but the closing mark. Throws std::runtime_error if the library refuses.
    void Fill(CSyncMark* pBegin, std::span<const Segment> segments);

private:
    static constexpr std::size_t kRun = 40;  // a variable list holds 50 variables

    // The name of the variable for the beginning of segment i of a run.
    const std::string& Variable(std::size_t i);
    void FillRun(CSyncMark* pBegin, std::span<const Segment> run);
    void TieEnd(CSyncMark* pEnd);

    CPlexa& m_plexa;
    CStream* m_pStream;
    std::array<std::string, kRun> m_names;  // which the list refers to
    std::size_t m_nDeclared = 0;
    std::array<CSyncMark*, kRun> m_begins = {};  // where the segments of a run begin
    CVarList m_variables;
};

}  // namespace transcribe

#endif
