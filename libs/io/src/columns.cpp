// The columns in which marks stand.
#include "columns.h"

#include <algorithm>

#include "mlds/io/width.h"

namespace mlds::io {

Grid::Grid(const View& view) {
    for (const Lane& lane : view.lanes) {
        std::vector<Cell>& cells = m_cells.emplace_back();
        for (const Interval& interval : Intervals(lane.pStream)) {
            std::string text = LabelOf(lane, interval);
            const bool bTouches = !cells.empty() && interval.pRight->GetPrevStreamObj() !=
                                                        interval.pLeft->GetNextStreamObj();
            const std::size_t left = Instant(interval.pLeft);
            const std::size_t right = Instant(interval.pRight);
            // Tokens that touch share a cell: there is no mark whose column could divide them.
            if (bTouches && cells.back().leftInstant == left &&
                cells.back().rightInstant == right) {
                cells.back().text += text;
            } else {
                cells.push_back({std::move(text), left, right});
            }
        }
    }
    PlaceCells(ColumnsOfInstants());
}

// Synchronous marks stand for one instant. The one in the first stream that has one speaks for all.
std::size_t Grid::Instant(CSyncMark* pMark) {
    CSyncMark* pSpeaker = nullptr;
    for (int i = 0; pSpeaker == nullptr; ++i) pSpeaker = pMark->GetCorrespondingSyncMark(i);
    return m_instants.emplace(pSpeaker, m_instants.size()).first->second;
}

// The smallest columns that leave room for every cell. An instant has its column when everything
// that ends there has been placed. Ties that cross leave instants that wait for each other: the
// one that was met first then goes ahead.
std::vector<std::size_t> Grid::ColumnsOfInstants() const {
    std::vector<std::vector<const Cell*>> beginning(m_instants.size());
    std::vector<int> unplaced(m_instants.size());
    for (const std::vector<Cell>& cells : m_cells) {
        for (const Cell& cell : cells) {
            beginning[cell.leftInstant].push_back(&cell);
            ++unplaced[cell.rightInstant];
        }
    }
    std::vector<std::size_t> columns(m_instants.size());
    std::vector<bool> bPlaced(m_instants.size());
    std::vector<std::size_t> ready;
    const auto placeReady = [&] {
        while (!ready.empty()) {
            const std::size_t instant = ready.back();
            ready.pop_back();
            if (bPlaced[instant]) continue;
            bPlaced[instant] = true;
            for (const Cell* pCell : beginning[instant]) {
                --unplaced[pCell->rightInstant];
                if (bPlaced[pCell->rightInstant]) continue;
                std::size_t& column = columns[pCell->rightInstant];
                column = std::max(column, columns[instant] + 1 + Columns(pCell->text));
                if (unplaced[pCell->rightInstant] == 0) ready.push_back(pCell->rightInstant);
            }
        }
    };
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (unplaced[i] == 0) ready.push_back(i);
    }
    placeReady();
    for (std::size_t i = 0; i < columns.size(); ++i) {
        ready.push_back(i);
        placeReady();
    }
    return columns;
}

// Where ties cross, a lane has its marks where there is room, and nothing of it is lost.
void Grid::PlaceCells(const std::vector<std::size_t>& columns) {
    for (std::vector<Cell>& cells : m_cells) {
        std::size_t last = 0;
        for (Cell& cell : cells) {
            cell.left = std::max(last, columns[cell.leftInstant]);
            last = std::max(cell.left + 1 + Columns(cell.text), columns[cell.rightInstant]);
            cell.right = last;
        }
        m_width = std::max(m_width, last);
    }
}

}  // namespace mlds::io
