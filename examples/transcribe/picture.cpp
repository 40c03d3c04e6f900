// The tiers as text, aligned under each other.
#include "picture.h"

#include <algorithm>
#include <ostream>
#include <string>
#include <unordered_map>
#include <vector>

#include "interval.h"
#include "label.h"
#include "latin1.h"

namespace transcribe {

namespace {

constexpr std::size_t kLabelWidth = 9;
constexpr std::size_t kBlockWidth = 90;  // and one column for the last mark

// What stands between two marks of a stream, and the instants that the marks stand for.
struct Cell {
    std::size_t left;
    std::size_t right;
    std::string text;
};

class Picture {
public:
    explicit Picture(Tiers& tiers);
    void Print(std::ostream& out) const;

private:
    struct Row {
        std::string label;
        std::vector<Cell> cells;
    };

    std::size_t Instant(CSyncMark* pMark);
    void FindColumns();
    std::string Draw(const Row& row) const;
    std::size_t LastOfBlock(std::size_t first) const;

    std::vector<Row> m_rows;  // one for each stream
    std::unordered_map<CSyncMark*, std::size_t> m_instants;
    std::vector<std::size_t> m_columns;  // by instant
};

Picture::Picture(Tiers& tiers) {
    for (int i = 0; i < tiers.plexa.GetNumStreams(); ++i) {
        CStream* pStream = tiers.plexa.pStream(i);
        Row& row = m_rows.emplace_back(Row{pStream->GetStreamName(), {}});
        row.label.resize(kLabelWidth, ' ');
        for (const Interval& interval : Intervals(pStream)) {
            const std::size_t left = Instant(interval.pLeft);
            const std::size_t right = Instant(interval.pRight);
            row.cells.push_back({left, right, LabelOf(tiers, interval)});
        }
    }
    FindColumns();
}

// Synchronous marks stand for one instant. The one in the first stream that has one speaks for all.
std::size_t Picture::Instant(CSyncMark* pMark) {
    CSyncMark* pSpeaker = nullptr;
    for (int i = 0; pSpeaker == nullptr; ++i) pSpeaker = pMark->GetCorrespondingSyncMark(i);
    return m_instants.emplace(pSpeaker, m_instants.size()).first->second;
}

// The smallest columns that leave room for every cell. An instant has its column when everything
// that ends there has been placed.
void Picture::FindColumns() {
    std::vector<std::vector<const Cell*>> beginning(m_instants.size());
    std::vector<int> unplaced(m_instants.size());
    for (const Row& row : m_rows) {
        for (const Cell& cell : row.cells) {
            beginning[cell.left].push_back(&cell);
            ++unplaced[cell.right];
        }
    }
    m_columns.resize(m_instants.size());
    std::vector<std::size_t> ready = {0};  // the instant at which all rows begin
    while (!ready.empty()) {
        const std::size_t instant = ready.back();
        ready.pop_back();
        for (const Cell* pCell : beginning[instant]) {
            std::size_t& column = m_columns[pCell->right];
            column = std::max(column, m_columns[instant] + 1 + pCell->text.size());
            if (--unplaced[pCell->right] == 0) ready.push_back(pCell->right);
        }
    }
}

std::string Picture::Draw(const Row& row) const {
    std::string line = "|";
    for (const Cell& cell : row.cells) {
        line += cell.text;
        line.resize(m_columns[cell.right], ' ');
        line += '|';
    }
    return line;
}

// The last cell of the first row that shares a block with the given one: where possible a space.
std::size_t Picture::LastOfBlock(std::size_t first) const {
    const std::vector<Cell>& typed = m_rows.front().cells;
    const std::size_t limit = m_columns[typed[first].left] + kBlockWidth;
    std::size_t last = first;
    for (std::size_t i = first; i < typed.size() && m_columns[typed[i].right] <= limit; ++i) {
        const bool bBetweenWords = typed[i].text == " " || i + 1 == typed.size();
        if (bBetweenWords || typed[last].text != " ") last = i;
    }
    return last;
}

void Picture::Print(std::ostream& out) const {
    std::vector<std::string> lines;
    for (const Row& row : m_rows) lines.push_back(Draw(row));
    const std::vector<Cell>& typed = m_rows.front().cells;
    for (std::size_t first = 0; first < typed.size();) {
        const std::size_t last = LastOfBlock(first);
        const std::size_t begin = m_columns[typed[first].left];
        const std::size_t end = m_columns[typed[last].right] + 1;
        if (first > 0) out << '\n';
        for (std::size_t i = 0; i < lines.size(); ++i) {
            const std::string line = m_rows[i].label + lines[i].substr(begin, end - begin);
            out << ToUtf8(line.substr(0, line.find_last_not_of(' ') + 1)) << '\n';
        }
        first = last + 1;
    }
}

}  // namespace

void PrintPicture(Tiers& tiers, std::ostream& out) {
    Picture(tiers).Print(out);
}

void PrintPhones(Tiers& tiers, std::ostream& out) {
    const char* between = "";
    for (const Interval& word : Intervals(tiers.pWord)) {
        for (const Interval& syl : Intervals(word.pLeft->GetCorrespondingSyncMark(tiers.pSyl),
                                             word.pRight->GetCorrespondingSyncMark(tiers.pSyl))) {
            const std::string phones = Phones(tiers, syl.pLeft, syl.pRight);
            if (phones.empty()) continue;
            out << between << phones;
            between = ".";
        }
        if (*between != '\0') between = " ";
    }
    out << '\n';
}

}  // namespace transcribe
