// What the parts of the program share: what an engine sent, whether it is there, and what it is to
// be asked. Every operation may be called by any thread.
#ifndef MLDS_VIEWER_TOOL_VIEWER_H
#define MLDS_VIEWER_TOOL_VIEWER_H

#include <chrono>
#include <condition_variable>
#include <mutex>

#include "journal.h"

namespace mlds_viewer {

struct Status {
    std::int64_t run;     // the same as long as the program runs: numbers of others are not ours
    std::size_t version;  // grows when anything else changes
    bool bConnected;
    bool bTakesRequests;
    std::string engine;  // its address
    std::size_t first;   // numbers of journal entries
    std::size_t last;
    std::size_t shown;
};

class Viewer {
public:
    /// No longer value is asked for, in bytes.
    static constexpr std::size_t kLongestValue = 1000;

    Viewer();
    Viewer(const Viewer&) = delete;
    Viewer& operator=(const Viewer&) = delete;
    ~Viewer();

    // What happens to the engine.
    void EngineCame(const std::string& address);
    void EngineTakesRequests(bool bTakes);
    void EngineWent(const std::string& why);
    void Receive(Message message);

    /// The packets to be sent since the last call. What wakeUp() gives is readable when there are
    /// new ones.
    std::vector<std::string> TakePackets();
    int wakeUp() const { return m_wakeUp; }

    Status status() const;
    /// Returns when the version is another one, or when the time is over.
    Status WaitForChange(std::size_t version, std::chrono::milliseconds time) const;
    /// Has everybody return who waits.
    void WakeAll();
    /// The structure as it was behind an entry. It is built without keeping others waiting.
    MirrorPtr StructureAt(std::size_t number);
    /// At most n entries from a number on.
    std::vector<EntryPtr> Entries(std::size_t from, std::size_t n) const;

    /// Asks the engine to set a field, by a value in UTF-8. Empty, or why it cannot be asked.
    std::string SetField(Id token, int field, const std::string& value);
    /// Asks the engine to close the link. Empty, or why it cannot be asked.
    std::string Disconnect();

private:
    std::string WhyNoRequests() const;
    std::optional<std::string> InEngineText(const Field& field, const std::string& current,
                                            const std::string& value) const;
    void Ask(std::string packet);
    void Changed();

    mutable std::mutex m_mutex;
    mutable std::condition_variable m_changed;
    Journal m_journal;
    std::vector<std::string> m_packets;
    Status m_status{};
    bool m_bLatin1 = false;  // the engine's texts are
    int m_wakeUp;
};

/// Why an engine would not take a value for a field; empty if it would.
std::string WhyNoValue(const Field& field, const std::string& engineText);

}  // namespace mlds_viewer

#endif
