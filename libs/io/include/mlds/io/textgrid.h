// Praat's format for annotated time: the long text form.
#ifndef MLDS_IO_TEXTGRID_H
#define MLDS_IO_TEXTGRID_H

#include <iosfwd>
#include <memory>

#include "mlds/io/timeline.h"

namespace mlds::io {

/// A TextGrid of any number of utterances, one behind the other. The format states how many
/// intervals a tier has in front of them, so a long one waits in temporary files, not in memory.
class TextGrid {
public:
    TextGrid();
    ~TextGrid();
    TextGrid(const TextGrid&) = delete;
    TextGrid& operator=(const TextGrid&) = delete;

    /// Adds what lasts; the tiers are those of the first timeline. Throws std::runtime_error if a
    /// temporary file cannot be written.
    void Add(const Timeline& timeline);
    /// Nothing was added that lasts: there is no grid without time.
    bool empty() const;
    /// Writes it all, an interval tier for every tier, in seconds and UTF-8. It is empty then.
    void Write(std::ostream& out);

private:
    struct Parts;
    std::unique_ptr<Parts> m_pParts;
};

}  // namespace mlds::io

#endif
