// The journal: chapters, each with the structure in front of it, and going back.
#include "journal.h"

#include <algorithm>

#include "report/messages.h"
#include "words.h"

namespace mlds_viewer {

namespace {

// A chapter costs a copy of the structure and going back to a place in it the messages before: with
// as many messages as the structure has objects neither outgrows the other.
constexpr std::size_t kShortestChapter = 500;

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
    Entry entry{++m_nLast, std::move(message), "", ObjectOf(event)};
    const int code = entry.message.code;
    entry.words = IsOwn(code) ? entry.message.text : InWords(event, m_now);
    const bool bFull = m_chapters.empty() || m_chapters.back().entries.size() >=
                                                 std::max(kShortestChapter, m_now.nObjects());
    if (bFull) m_chapters.push_back({std::make_shared<const Mirror>(m_now), {}});
    Chapter& chapter = m_chapters.back();
    chapter.entries.push_back(std::move(entry));
    CarryOut(chapter.entries.back().message, event, m_now);
    NoteDelay(event, code);
    while (m_chapters.size() > 1 && m_nLast - m_chapters[1].first() + 1 >= m_nMostEntries) {
        m_chapters.pop_front();
    }
    return m_chapters.back().entries.back();
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

const Entry& Journal::At(std::size_t number) const {
    const Chapter& chapter = ChapterOf(number);
    return chapter.entries[number - chapter.first()];
}

Mirror Journal::StructureAt(std::size_t number) const {
    if (number >= m_nLast) return m_now;
    number = std::max(number, first());
    const Chapter& chapter = ChapterOf(number);
    Mirror mirror = *chapter.before;
    for (const Entry& entry : chapter.entries) {
        if (entry.number > number) break;
        CarryOut(entry.message, UnderstandEntry(entry.message), mirror);
    }
    return mirror;
}

std::vector<Id> Journal::ObjectsOf(std::size_t from, std::size_t to) const {
    std::vector<Id> objects;
    for (std::size_t number = std::max(from, first()); number < std::min(to, m_nLast + 1);
         ++number) {
        const Entry& entry = At(number);
        const int code = entry.message.code;
        if (code == mlds::msgFullDump || code == mlds::msgContentsDump || code == kConnected) {
            return {};
        }
        if (entry.object != 0) objects.push_back(entry.object);
    }
    return objects;
}

}  // namespace mlds_viewer
