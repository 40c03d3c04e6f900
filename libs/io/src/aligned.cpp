// Tiers as aligned text.
#include "mlds/io/aligned.h"

#include <algorithm>
#include <ostream>

#include "columns.h"
#include "mlds/io/width.h"

namespace mlds::io {

namespace {

constexpr std::size_t kLeastNameWidth = 9;

// One lane while its line is drawn, block after block.
struct Row {
    std::string name;
    const std::vector<Cell>* pCells = nullptr;
    std::size_t next = 0;  // the first cell that is not behind the block
};

class Picture {
public:
    Picture(const View& view, std::size_t width) : m_grid(view) {
        std::size_t nameWidth = kLeastNameWidth;
        for (const Lane& lane : view.lanes) {
            nameWidth = std::max(nameWidth, Columns(Cleaned(lane.name)) + 1);
        }
        for (std::size_t i = 0; i < view.lanes.size(); ++i) {
            std::string name = Cleaned(view.lanes[i].name);
            name.append(nameWidth - Columns(name), ' ');
            m_rows.push_back({std::move(name), &m_grid.cells(i), 0});
        }
        // A column is kept for the last mark.
        m_blockWidth = width > nameWidth + 1 ? width - nameWidth - 1 : 1;
        FindGuide(view);
    }

    void Print(std::ostream& out) {
        std::size_t begin = 0;
        for (bool bFirst = true; bFirst || begin < m_grid.width(); bFirst = false) {
            const std::size_t end = EndOfBlock(begin);
            if (!bFirst) out << '\n';
            for (Row& row : m_rows) {
                std::string line = row.name + Draw(row, begin, end);
                line.erase(line.find_last_not_of(' ') + 1);
                out << line << '\n';
            }
            begin = end;
        }
    }

private:
    // The lane at whose marks lines are cut: what was typed, else the one with the most marks.
    void FindGuide(const View& view) {
        for (std::size_t i = 0; i < m_rows.size(); ++i) {
            const std::vector<Cell>* pCells = m_rows[i].pCells;
            if (view.lanes[i].bText && !pCells->empty()) {
                m_pGuide = pCells;
                return;
            }
            if (m_pGuide == nullptr || pCells->size() > m_pGuide->size()) m_pGuide = pCells;
        }
    }

    // The last column that still belongs to the block: of a mark, where possible behind a blank.
    std::size_t EndOfBlock(std::size_t begin) {
        const std::size_t limit = begin + m_blockWidth;
        if (m_grid.width() <= limit) return m_grid.width();
        std::size_t end = 0;
        std::size_t behindBlank = 0;
        for (; m_pGuide != nullptr && m_guideAt < m_pGuide->size(); ++m_guideAt) {
            const Cell& cell = (*m_pGuide)[m_guideAt];
            const std::size_t right = cell.right;
            if (right <= begin) continue;
            if (right > limit && end > 0) break;
            end = right;
            if (cell.text == " ") behindBlank = right;
            if (right > limit) break;  // one cell that is wider than a block
        }
        if (behindBlank == 0 || behindBlank == end) return end > 0 ? end : m_grid.width();
        // The cells between stand in the next block.
        while (m_guideAt > 0 && (*m_pGuide)[m_guideAt - 1].right > behindBlank) {
            --m_guideAt;
        }
        return behindBlank;
    }

    // The columns from `begin` to `end` of a row, the mark at `end` with them.
    std::string Draw(Row& row, std::size_t begin, std::size_t end) const {
        std::string line;
        std::size_t column = begin;
        const auto goTo = [&](std::size_t to) {
            if (to > column) line.append(to - column, ' ');
            column = std::max(column, to);
        };
        const auto mark = [&](std::size_t at) {
            if (at < begin || at > end || at < column) return;
            goTo(at);
            line += '|';
            column = at + 1;
        };
        const std::vector<Cell>& cells = *row.pCells;
        for (std::size_t i = row.next; i < cells.size(); ++i) {
            const std::size_t left = cells[i].left;
            const std::size_t right = cells[i].right;
            if (left > end) break;
            if (right < begin) {
                row.next = i + 1;
                continue;
            }
            mark(left);
            const std::size_t first = std::max(left + 1, begin);
            goTo(std::min(first, end));
            if (left < end) {
                const std::string text =
                    CutColumns(cells[i].text, first - left - 1, end - left - 1);
                line += text;
                column += Columns(text);
            }
            mark(right);
        }
        return line;
    }

    Grid m_grid;
    std::vector<Row> m_rows;
    const std::vector<Cell>* m_pGuide = nullptr;
    std::size_t m_guideAt = 0;
    std::size_t m_blockWidth = 0;
};

}  // namespace

void PrintAligned(const View& view, std::ostream& out, std::size_t width) {
    Picture(view, width).Print(out);
}

std::string TokenLine(const Lane& lane, CStream* pGroups, const Between& between) {
    std::string line;
    bool bNewGroup = false;
    // A token of the groups begins or ends here.
    const auto divides = [&](CSyncMark* pMark) {
        CSyncMark* p = pGroups != nullptr ? pMark->GetCorrespondingSyncMark(pGroups) : nullptr;
        if (p == nullptr) return false;
        CStreamObj* const pNext = p->GetNextStreamObj();
        CStreamObj* const pPrevious = p->GetPrevStreamObj();
        return (pNext != nullptr && pNext->GetObjectType(otToken)) ||
               (pPrevious != nullptr && pPrevious->GetObjectType(otToken));
    };
    for (const Interval& interval : Intervals(lane.pStream)) {
        bNewGroup |= divides(interval.pLeft);
        const std::string label = LabelOf(lane, interval);
        if (label.empty()) continue;
        if (!line.empty()) line += bNewGroup ? between.groups : between.tokens;
        line += label;
        bNewGroup = false;
    }
    return line;
}

}  // namespace mlds::io
