// The columns in which marks stand, so that every label between them has room.
#ifndef MLDS_IO_COLUMNS_H
#define MLDS_IO_COLUMNS_H

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "mlds/io/view.h"

namespace mlds::io {

/// What stands between two marks of a stream.
struct Cell {
    std::string text;
    std::size_t leftInstant =
        0;  ///< what the marks stand for, together with those they are tied to
    std::size_t rightInstant = 0;
    std::size_t left = 0;  ///< the columns of the marks
    std::size_t right = 0;
};

/// All cells of a view with their columns, which never lead back in a lane.
class Grid {
public:
    explicit Grid(const View& view);

    const std::vector<Cell>& cells(std::size_t lane) const { return m_cells[lane]; }
    /// The column of the last mark.
    std::size_t width() const { return m_width; }

private:
    std::size_t Instant(CSyncMark* pMark);
    std::vector<std::size_t> ColumnsOfInstants() const;
    void PlaceCells(const std::vector<std::size_t>& columns);

    std::vector<std::vector<Cell>> m_cells;  // by lane
    std::unordered_map<CSyncMark*, std::size_t> m_instants;
    std::size_t m_width = 0;
};

}  // namespace mlds::io

#endif
