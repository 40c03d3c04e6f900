// A viewer for tests: it listens on a port of its own, keeps what it is told, and can misbehave.
#ifndef MLDS_TESTS_VIEWER_FAKEVIEWER_H
#define MLDS_TESTS_VIEWER_FAKEVIEWER_H

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <linux/sockios.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace mlds_test {

using Bytes = std::string;

inline Bytes Word(std::uint32_t n) {
    return {static_cast<char>(n >> 24), static_cast<char>(n >> 16), static_cast<char>(n >> 8),
            static_cast<char>(n)};
}
inline Bytes IntItem(std::uint32_t n) {
    return Word(3) + Word(n);
}
inline Bytes TextItem(const std::string& text) {
    return Word(8) + Word(static_cast<std::uint32_t>(text.size())) + text;
}
inline Bytes EditRequest(const std::string& text) {
    return IntItem(1004) + TextItem(text);
}

/// How long anybody here waits for the other side: what is waited for longer does not come.
constexpr int kMostSeconds = 10;

/// Receiving from the socket fails after that time.
inline void LimitWaiting(int s) {
    const timeval limit{kMostSeconds, 0};
    ::setsockopt(s, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
}

/// A folder that is the current one while it lives, with a "plexaview.cfg" of the given text.
class ConfigFolder {
public:
    explicit ConfigFolder(const std::string& config) {
        char name[] = "/tmp/mlds-viewer-XXXXXX";
        if (::mkdtemp(name) == nullptr) throw std::runtime_error("no folder");
        m_folder = name;
        std::filesystem::current_path(m_folder);
        std::ofstream("plexaview.cfg") << config;
    }
    ~ConfigFolder() {
        std::filesystem::current_path(m_old);
        std::filesystem::remove_all(m_folder);
    }

private:
    std::filesystem::path m_old = std::filesystem::current_path(), m_folder;
};

/// How a viewer behaves that is not as it should be.
struct Manners {
    std::vector<Bytes> acks = {IntItem(0)};  // each is sent by itself, with a pause between
    bool bRefuseRequests = false;            // the second connection is closed at once
    int nMessages = -1;                      // after so many, it closes both connections
    int nAnswers = -1;  // after so many, greetings included, it is silent and leaves all open
};

class FakeViewer {
public:
    explicit FakeViewer(Manners manners = {}) : m_manners(std::move(manners)) {
        m_listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto* p = reinterpret_cast<sockaddr*>(&address);
        if (::bind(m_listener, p, size) != 0 || ::listen(m_listener, 4) != 0 ||
            ::getsockname(m_listener, p, &size) != 0) {
            throw std::runtime_error("cannot listen");
        }
        LimitWaiting(m_listener);
        m_port = ntohs(address.sin_port);
        m_thread = std::thread([this] { Run(); });
    }
    ~FakeViewer() {
        m_bEnd = true;
        ::shutdown(m_listener, SHUT_RDWR);
        m_thread.join();
        ::close(m_listener);
    }

    std::string Config() const {
        return "host = 127.0.0.1\nport = " + std::to_string(m_port) + "\n";
    }
    int Port() const { return m_port; }
    /// The packets since the last call, as text: "1003 0 0x...". All that were acknowledged are
    /// there.
    std::vector<std::string> Take() {
        const std::lock_guard lock(m_mutex);
        return std::exchange(m_messages, {});
    }
    void Request(const Bytes& bytes) {
        for (int i = 0; m_requests < 0 && i < kMostSeconds * 1000; ++i) ::usleep(1000);
        if (m_requests < 0) throw std::runtime_error("the engine takes no requests");
        ::send(m_requests, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    }
    /// Waits until so many acknowledgements have been sent and have come, in whole.
    bool AwaitAcks(int n) const {
        int nOnTheirWay = 1;
        for (int i = 0; nOnTheirWay != 0 && i < kMostSeconds * 1000; ++i) {
            if (i > 0) ::usleep(1000);
            if (m_nAcks >= n) ::ioctl(m_reports, SIOCOUTQ, &nOnTheirWay);
        }
        return nOnTheirWay == 0;
    }
    /// Goes, as a viewer does that is closed. Another takes its place.
    void Leave() { ::shutdown(m_reports, SHUT_RDWR); }
    /// Stops reading, in the middle of the message that comes next, and leaves all open.
    void Freeze() { m_bFrozen = true; }
    void CloseRequests() { ::shutdown(m_requests, SHUT_RDWR); }

private:
    // One engine after the other, until the listener is shut down.
    void Run() {
        for (;;) {
            pollfd one{m_listener, POLLIN, 0};
            ::poll(&one, 1, -1);  // until there is one, or the listener is shut down
            m_reports = Accept();
            if (m_reports < 0) return;
            Serve(m_reports);
            ::close(m_reports);
        }
    }

    int Accept() {
        const int s = ::accept(m_listener, nullptr, nullptr);
        const int on = 1;
        ::setsockopt(s, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
        LimitWaiting(s);
        return s;
    }

    void Serve(int reports) {
        Bytes bytes;
        if (Read(reports, bytes, 16)) Keep(bytes);
        Acknowledge(reports);
        const int requests = Accept();
        Bytes greeting;
        if (!m_manners.bRefuseRequests && Read(requests, greeting, 16)) {
            Keep(greeting);
            Acknowledge(requests);
            m_requests = requests;
        } else {
            ::close(requests);
        }
        bytes.clear();
        while (ReadMessage(reports) && --m_manners.nMessages != 0) Acknowledge(reports);
        if (m_requests >= 0) ::close(m_requests);
        m_requests = -1;
    }

    void Keep(const Bytes& bytes) {
        const std::lock_guard lock(m_mutex);
        m_messages.push_back(bytes);
    }

    void Acknowledge(int s) {
        if (m_manners.nAnswers == 0) WaitForTheEnd();
        --m_manners.nAnswers;
        for (const Bytes& ack : m_manners.acks) {
            if (&ack != m_manners.acks.data()) ::usleep(2000);
            ::send(s, ack.data(), ack.size(), MSG_NOSIGNAL);
        }
        ++m_nAcks;
    }

    // Not longer than a test should take: a host that waits for ever is a failure, not a hang.
    void WaitForTheEnd() const {
        for (int i = 0; !m_bEnd && i < kMostSeconds * 1000; ++i) ::usleep(1000);
    }

    static bool Read(int s, Bytes& bytes, std::size_t n) {
        const std::size_t old = bytes.size();
        bytes.resize(old + n);
        const ssize_t got = ::recv(s, bytes.data() + old, n, MSG_WAITALL);
        EXPECT_FALSE(got < 0 && errno == EAGAIN) << "an engine neither speaks nor closes";
        return got == static_cast<ssize_t>(n);
    }
    static std::uint32_t WordAt(const Bytes& bytes, std::size_t at) {
        std::uint32_t word = 0;
        for (std::size_t i = at; i < at + 4; ++i)
            word = word << 8 | static_cast<unsigned char>(bytes[i]);
        return word;
    }

    bool ReadMessage(int s) {
        Bytes bytes;
        if (!Read(s, bytes, 8)) return false;
        if (m_bFrozen) WaitForTheEnd();
        const std::uint32_t code = WordAt(bytes, 4);
        std::string message = std::to_string(code);
        if (WordAt(bytes, 0) != 3) message += " in no int item";
        if (code != 4 && (code < 1000 || (code > 1002 && code != 1005))) {
            if (!Read(s, bytes, 8)) return false;
            if (WordAt(bytes, 8) != 8) message += " without a text";
            Bytes text;
            if (!Read(s, text, WordAt(bytes, 12))) return false;
            message += " " + text;
        }
        Keep(message);
        return true;
    }

    Manners m_manners;
    int m_listener = -1;
    int m_port = 0;
    std::atomic<int> m_reports{-1};
    std::atomic<int> m_requests{-1};
    std::atomic<int> m_nAcks{0};
    std::atomic<bool> m_bFrozen{false};
    std::atomic<bool> m_bEnd{false};
    std::mutex m_mutex;
    std::vector<std::string> m_messages;
    std::thread m_thread;
};

}  // namespace mlds_test

#endif
