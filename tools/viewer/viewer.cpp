// What the parts of the program share, behind one lock; and which edits make sense.
#include "viewer.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <system_error>

#include "mlds/field.h"
#include "text.h"
#include "viewer/link/requestreader.h"

namespace mlds_viewer {

namespace {

template <typename T>
bool IsNumber(const std::string& text) {
    T value{};
    const char* pEnd = text.data() + text.size();
    const auto [p, error] = std::from_chars(text.data(), pEnd, value);
    return error == std::errc{} && p == pEnd;
}

bool IsWord(const std::string& text) {
    constexpr std::string_view kSeparators(" \t\n\v\f\r\0", 7);
    return !text.empty() && text.find_first_of(kSeparators) == std::string::npos;
}

}  // namespace

std::string WhyNoValue(const Field& field, const std::string& engineText) {
    if (!IsWord(engineText)) return "a value is one word: spaces cannot be sent";
    if (engineText.size() > Viewer::kLongestValue) return "the value is too long";
    switch (field.type.value_or(fvEnum)) {
        case fvInt: return IsNumber<int>(engineText) ? "" : "the field holds whole numbers";
        case fvFloat: return IsNumber<double>(engineText) ? "" : "the field holds numbers";
        case fvChar: return "engines take no requests for fields of characters";
        default: break;
    }
    const bool bKnown =
        field.values.empty() || std::ranges::find(field.values, engineText) != field.values.end();
    return bKnown ? "" : "the field has no such value";
}

Viewer::Viewer() : m_wakeUp(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    if (m_wakeUp < 0) throw std::system_error(errno, std::generic_category(), "eventfd");
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    m_status.run = std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
}

Viewer::~Viewer() {
    ::close(m_wakeUp);
}

void Viewer::EngineCame(const std::string& address) {
    const std::lock_guard lock(m_mutex);
    m_status.bConnected = true;
    m_status.engine = address;
    m_bLatin1 = false;
    m_packets.clear();
    m_journal.Add({Journal::kConnected, "engine " + address + " connected"});
    Changed();
}

void Viewer::EngineTakesRequests(bool bTakes) {
    const std::lock_guard lock(m_mutex);
    m_status.bTakesRequests = bTakes;
    Changed();
}

void Viewer::EngineWent(const std::string& why) {
    const std::lock_guard lock(m_mutex);
    m_status.bConnected = false;
    m_status.bTakesRequests = false;
    m_journal.Add({Journal::kDisconnected, "engine " + m_status.engine + " gone: " + why});
    Changed();
}

void Viewer::Receive(Message message) {
    const bool bLatin1 = IsLatin1(message.text);
    const std::lock_guard lock(m_mutex);
    m_bLatin1 = m_bLatin1 || bLatin1;
    m_journal.Add(std::move(message));
    Changed();
}

void Viewer::Changed() {
    ++m_status.version;
    m_status.first = m_journal.first();
    m_status.last = m_journal.last();
    m_status.shown = m_journal.shown();
    m_changed.notify_all();
}

std::vector<std::string> Viewer::TakePackets() {
    const std::lock_guard lock(m_mutex);
    std::uint64_t count;
    // Nothing to read is as good: the packets are what counts.
    [[maybe_unused]] const auto n = ::read(m_wakeUp, &count, sizeof count);
    return std::exchange(m_packets, {});
}

void Viewer::WakeAll() {
    const std::lock_guard lock(m_mutex);
    Changed();
}

Status Viewer::status() const {
    const std::lock_guard lock(m_mutex);
    return m_status;
}

Status Viewer::WaitForChange(std::size_t version, std::chrono::milliseconds time) const {
    std::unique_lock lock(m_mutex);
    m_changed.wait_for(lock, time, [&] { return m_status.version != version; });
    return m_status;
}

MirrorPtr Viewer::StructureAt(std::size_t number) {
    // An engine waits for this lock with every message: only pointers are copied under it, and what
    // is dropped is destroyed behind it.
    std::unique_lock lock(m_mutex);
    const Excerpt excerpt = m_journal.ExcerptAt(number);
    lock.unlock();
    MirrorPtr mirror = Rebuild(excerpt);
    lock.lock();
    const MirrorPtr dropped = m_journal.Remember(excerpt.number, mirror);
    lock.unlock();
    return mirror;
}

std::vector<EntryPtr> Viewer::Entries(std::size_t from, std::size_t n) const {
    const std::lock_guard lock(m_mutex);
    return m_journal.Entries(from, n);
}

std::string Viewer::WhyNoRequests() const {
    if (!m_status.bConnected) return "no engine is connected";
    return m_status.bTakesRequests ? "" : "the engine takes no requests";
}

void Viewer::Ask(std::string packet) {
    m_packets.push_back(std::move(packet));
    const std::uint64_t one = 1;
    // It cannot fail but for a count that is at its end, and then there is enough to wake up for.
    [[maybe_unused]] const auto n = ::write(m_wakeUp, &one, sizeof one);
}

// The value that a field has and a possible one as the engine wrote them; anything else in the
// encoding that its texts seem to have.
std::optional<std::string> Viewer::InEngineText(const Field& field, const std::string& current,
                                                const std::string& value) const {
    if (Shown(current) == value) return current;
    for (const std::string& possible : field.values) {
        if (Shown(possible) == value) return possible;
    }
    return Typed(value, m_bLatin1);
}

std::string Viewer::SetField(Id token, int field, const std::string& value) {
    const std::lock_guard lock(m_mutex);
    if (std::string why = WhyNoRequests(); !why.empty()) return why;
    const Object* pToken = m_journal.now().Find(token);
    if (pToken == nullptr || pToken->kind != Kind::token) return "there is no such token any more";
    const std::vector<Field>& fields =
        m_journal.now().streams()[static_cast<std::size_t>(pToken->stream)].fields;
    if (field < 0 || static_cast<std::size_t>(field) >= fields.size()) {
        return "the token has no such field";
    }
    const Field& asked = fields[static_cast<std::size_t>(field)];
    const auto i = static_cast<std::size_t>(field);
    const std::string current = i < pToken->values.size() ? pToken->values[i] : "";
    const std::optional<std::string> text = InEngineText(asked, current, value);
    if (!text) return "the engine's encoding, Latin-1, lacks a character of the value";
    std::string why = WhyNoValue(asked, *text);
    if (why.empty()) Ask(FieldPacket(token, pToken->stream, field, *text));
    return why;
}

std::string Viewer::Disconnect() {
    const std::lock_guard lock(m_mutex);
    std::string why = WhyNoRequests();
    if (why.empty()) Ask(NumberPacket(mlds::reqDisconnect));
    return why;
}

}  // namespace mlds_viewer
