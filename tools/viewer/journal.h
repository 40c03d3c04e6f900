// The messages of one or several engines in order, and the structure as it was after each.
#ifndef MLDS_VIEWER_TOOL_JOURNAL_H
#define MLDS_VIEWER_TOOL_JOURNAL_H

#include <array>
#include <deque>
#include <memory>

#include "mirror.h"

namespace mlds_viewer {

/// A message with its number. Numbers count from 1 over all engines.
struct Entry {
    std::size_t number;
    Message message;
    std::string words;  // fit to be shown
    Id object;          // that it is about; 0 for none
};
using EntryPtr = std::shared_ptr<const Entry>;
using MirrorPtr = std::shared_ptr<const Mirror>;

/// What it takes to build the structure as it was behind an entry, without the journal: a structure
/// and the entries that lead from it there.
struct Excerpt {
    std::size_t number;
    MirrorPtr before;
    std::vector<EntryPtr> entries;
};
/// Takes as long as there are entries and objects.
MirrorPtr Rebuild(const Excerpt& excerpt);

/// The objects that entries are about, unless everything was told anew among them.
std::vector<Id> ObjectsOf(const std::vector<EntryPtr>& entries);

/// What a journal keeps at most. Of what has just been told enough is kept in any case.
struct JournalLimits {
    std::size_t nEntries = 200'000;
    std::size_t nBytes = 128 << 20;  // of messages and structures, roughly
};

class Journal {
public:
    /// The codes of entries of our own: an engine came or went. Their texts say which and why.
    static constexpr int kConnected = -1;
    static constexpr int kDisconnected = -2;

    explicit Journal(JournalLimits limits = {}) : m_limits(limits) {}

    /// Appends a message and carries it out. Of more than the journal keeps the oldest go.
    const Entry& Add(Message message);

    const Mirror& now() const { return m_now; }
    /// Numbers of the entries that are kept; none if last < first.
    std::size_t first() const { return m_chapters.empty() ? 1 : m_chapters.front().first(); }
    std::size_t last() const { return m_nLast; }
    /// The last entry behind which the structure is fit to be seen: not inside a bulk edit.
    std::size_t shown() const { return m_nShown; }
    std::size_t nBytes() const { return m_nBytes; }

    /// At most n of the entries that are kept, from a number on.
    std::vector<EntryPtr> Entries(std::size_t from, std::size_t n) const;
    /// What leads to the structure behind an entry, shared and not copied. Numbers outside of what
    /// is kept are moved into it.
    Excerpt ExcerptAt(std::size_t number) const;
    /// Takes a structure that was built from an excerpt, so that its neighbours are built from it;
    /// gives what it is kept instead of.
    MirrorPtr Remember(std::size_t number, MirrorPtr mirror);

private:
    // The structure in front of some entries.
    struct Chapter {
        MirrorPtr before;
        std::size_t nBytesBefore;
        std::vector<EntryPtr> entries;
        std::size_t nBytes;  // of the entries
        std::size_t first() const { return entries.front()->number; }
    };
    struct Built {
        std::size_t number = 0;
        MirrorPtr mirror;
    };
    bool IsFull(const Chapter& chapter) const;
    bool IsTooLong() const;
    const Chapter& ChapterOf(std::size_t number) const;
    void NoteDelay(const Event& event, int code);

    JournalLimits m_limits;
    std::deque<Chapter> m_chapters;
    // What was looked at last: the newest structure, and one from the past.
    std::array<Built, 2> m_built;
    Mirror m_now;
    std::size_t m_nBytes = 0;
    std::size_t m_nLast = 0;
    std::size_t m_nShown = 0;
    bool m_bDelayed = false;
};

}  // namespace mlds_viewer

#endif
