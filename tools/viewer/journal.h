// The messages of one or several engines in order, and the structure as it was after each.
#ifndef MLDS_VIEWER_TOOL_JOURNAL_H
#define MLDS_VIEWER_TOOL_JOURNAL_H

#include <deque>
#include <memory>

#include "mirror.h"

namespace mlds_viewer {

/// A message with its number. Numbers count from 1 over all engines.
struct Entry {
    std::size_t number;
    Message message;
    std::string words;
    Id object;  // that it is about; 0 for none
};

class Journal {
public:
    /// The codes of entries of our own: an engine came or went. Their texts say which and why.
    static constexpr int kConnected = -1;
    static constexpr int kDisconnected = -2;

    explicit Journal(std::size_t nMostEntries = 200'000) : m_nMostEntries(nMostEntries) {}

    /// Appends a message and carries it out. Of more entries than the journal keeps the oldest go.
    const Entry& Add(Message message);

    const Mirror& now() const { return m_now; }
    /// Numbers of the entries that are kept; none if last < first.
    std::size_t first() const { return m_chapters.empty() ? 1 : m_chapters.front().first(); }
    std::size_t last() const { return m_nLast; }
    /// The last entry behind which the structure is fit to be seen: not inside a bulk edit.
    std::size_t shown() const { return m_nShown; }

    /// An entry that is kept.
    const Entry& At(std::size_t number) const;
    /// The structure as it was behind an entry. Numbers outside of what is kept are moved into it.
    Mirror StructureAt(std::size_t number) const;
    /// The objects that entries from <= number < to are about, unless everything was told anew.
    std::vector<Id> ObjectsOf(std::size_t from, std::size_t to) const;

private:
    // The structure in front of some entries.
    struct Chapter {
        std::shared_ptr<const Mirror> before;
        std::vector<Entry> entries;
        std::size_t first() const { return entries.front().number; }
    };
    const Chapter& ChapterOf(std::size_t number) const;
    void NoteDelay(const Event& event, int code);

    std::size_t m_nMostEntries;
    std::deque<Chapter> m_chapters;
    Mirror m_now;
    std::size_t m_nLast = 0;
    std::size_t m_nShown = 0;
    bool m_bDelayed = false;
};

}  // namespace mlds_viewer

#endif
