// The journal: chapters, each with the structure in front of it, and going back.
#include "journal.h"

#include <algorithm>

#include "report/messages.h"
#include "text.h"
#include "words.h"

namespace mlds_viewer {

namespace {

// A chapter costs a copy of the structure and going back to a place in it the messages before: with
// as many messages as the structure has objects neither outgrows the other.
constexpr std::size_t kShortestChapter = 500;
// Chapters go as a whole: few long messages make one as well.
constexpr std::size_t kFewestChapters = 32;
constexpr std::size_t kLongestWords = 1000;

std::size_t BytesOf(const Entry& entry) {
    return sizeof entry + entry.message.text.size() + entry.words.size();
}

bool IsOwn(int code) {
    return code == Journal::kConnected || code == Journal::kDisconnected;
}

// An engine that comes brings a structure of its own; that of one that went stays to be seen.
void CarryOut(const Message& message, const Event& event, Mirror& mirror) {
    if (message.code == Journal::kConnected) mirror.Clear();
    if (!IsOwn(message.code)) mirror.Apply(event);
}

Event UnderstandEntry(const Message& message) {
    return IsOwn(message.code) ? Event(Said{message.text}) : Understand(message);
}

// The delay flag that a message carries.
struct DelayFinder {
    std::optional<bool> operator()(const Inserted& event) const { return event.object.bDelayed; }
    std::optional<bool> operator()(const Changed& event) const { return event.object.bDelayed; }
    std::optional<bool> operator()(const Removed& event) const { return event.object.bDelayed; }
    std::optional<bool> operator()(const VariableTold& event) const { return event.bDelayed; }
    template <typename Other>
    std::optional<bool> operator()(const Other&) const {
        return std::nullopt;
    }
};

}  // namespace

const Entry& Journal::Add(Message message) {
    const Event event = UnderstandEntry(message);
    const int code = message.code;
    std::string words = IsOwn(code) ? message.text : InWords(event, m_now);
    const auto pEntry = std::make_shared<const Entry>(
        Entry{m_nLast + 1, std::move(message), Shortened(std::move(words), kLongestWords),
              ObjectOf(event)});
    if (m_chapters.empty() || IsFull(m_chapters.back())) {
        m_chapters.push_back({std::make_shared<const Mirror>(m_now), m_now.nBytes(), {}, 0});
        m_nBytes += m_chapters.back().nBytesBefore;
    }
    Chapter& chapter = m_chapters.back();
    chapter.entries.push_back(pEntry);
    chapter.nBytes += BytesOf(*pEntry);
    m_nBytes += BytesOf(*pEntry);
    ++m_nLast;
    CarryOut(pEntry->message, event, m_now);
    NoteDelay(event, code);
    while (m_chapters.size() > 1 && IsTooLong()) {
        m_nBytes -= m_chapters.front().nBytesBefore + m_chapters.front().nBytes;
        m_chapters.pop_front();
    }
    return *pEntry;
}

bool Journal::IsFull(const Chapter& chapter) const {
    return chapter.entries.size() >= std::max(kShortestChapter, m_now.nObjects()) ||
           chapter.nBytes >= std::max(m_limits.nBytes / kFewestChapters, chapter.nBytesBefore);
}

bool Journal::IsTooLong() const {
    return m_nLast - m_chapters[1].first() + 1 >= m_limits.nEntries || m_nBytes > m_limits.nBytes;
}

void Journal::NoteDelay(const Event& event, int code) {
    const bool bDump = code == mlds::msgFullDump || code == mlds::msgContentsDump;
    if (bDump) m_bDelayed = true;  // which ends with msgDisplayNow
    if (code == mlds::msgDisplayNow || IsOwn(code)) m_bDelayed = false;
    m_bDelayed = std::visit(DelayFinder{}, event).value_or(m_bDelayed);
    if (!m_bDelayed) m_nShown = m_nLast;
}

const Journal::Chapter& Journal::ChapterOf(std::size_t number) const {
    const auto next = std::ranges::upper_bound(m_chapters, number, {}, &Chapter::first);
    return *std::prev(next);
}

std::vector<EntryPtr> Journal::Entries(std::size_t from, std::size_t n) const {
    std::vector<EntryPtr> entries;
    from = std::max(from, first());
    while (from <= m_nLast && entries.size() < n) {
        const Chapter& chapter = ChapterOf(from);
        const auto begin =
            chapter.entries.begin() + static_cast<std::ptrdiff_t>(from - chapter.first());
        const auto nLeft = static_cast<std::size_t>(chapter.entries.end() - begin);
        const std::size_t nTaken = std::min(n - entries.size(), nLeft);
        entries.insert(entries.end(), begin, begin + static_cast<std::ptrdiff_t>(nTaken));
        from += nTaken;
    }
    return entries;
}

Excerpt Journal::ExcerptAt(std::size_t number) const {
    if (m_chapters.empty()) return {0, std::make_shared<const Mirror>(), {}};
    number = std::clamp(number, first(), m_nLast);
    const Chapter& chapter = ChapterOf(number);
    std::size_t at = chapter.first() - 1;
    Excerpt excerpt{number, chapter.before, {}};
    for (const Built& built : m_built) {
        if (built.mirror == nullptr || built.number < at || built.number > number) continue;
        at = built.number;
        excerpt.before = built.mirror;
    }
    excerpt.entries = Entries(at + 1, number - at);
    return excerpt;
}

MirrorPtr Journal::Remember(std::size_t number, MirrorPtr mirror) {
    Built& newest = m_built[0];
    Built& built = number >= newest.number ? newest : m_built[1];
    built.number = number;
    return std::exchange(built.mirror, std::move(mirror));
}

MirrorPtr Rebuild(const Excerpt& excerpt) {
    if (excerpt.entries.empty()) return excerpt.before;
    const auto pMirror = std::make_shared<Mirror>(*excerpt.before);
    for (const EntryPtr& pEntry : excerpt.entries) {
        CarryOut(pEntry->message, UnderstandEntry(pEntry->message), *pMirror);
    }
    return pMirror;
}

std::vector<Id> ObjectsOf(const std::vector<EntryPtr>& entries) {
    std::vector<Id> objects;
    for (const EntryPtr& pEntry : entries) {
        const int code = pEntry->message.code;
        if (code == mlds::msgFullDump || code == mlds::msgContentsDump ||
            code == Journal::kConnected) {
            return {};
        }
        if (pEntry->object != 0) objects.push_back(pEntry->object);
    }
    return objects;
}

}  // namespace mlds_viewer
