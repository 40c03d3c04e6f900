// Rooms for who waits, and a stream with time limits.
#include "webconnections.h"

#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>

namespace mlds_viewer {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kMostSilent = 64;
constexpr std::size_t kMostSlow = 48;
constexpr std::size_t kMostWorking = 24;
constexpr std::chrono::seconds kRequestTime{5};  // from the first waiting to the last byte
constexpr std::chrono::seconds kWriteTime{5};    // until some bytes are taken
// Until a browser that vanished without a word, as a telephone does, counts as gone.
constexpr unsigned kVanishedTime = 20'000;
constexpr std::size_t kMostRequests = 1000;  // of a connection

// What the socket is ready for by then; 0 for nothing.
int Await(int socket, int events, Clock::time_point end) {
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
        pollfd polled{socket, static_cast<short>(events), 0};
        const int n = ::poll(&polled, 1, std::max(static_cast<int>(left.count()), 0));
        if (n > 0) return polled.revents;
        if (n == 0 || errno != EINTR) return 0;
    }
}

class Connection final : public httplib::Stream {
public:
    Connection(int socket, WaitingRoom& silent, WaitingRoom& slow)
        : m_socket(socket), m_silent(silent), m_slow(slow) {
        constexpr unsigned time = kVanishedTime;
        ::setsockopt(socket, IPPROTO_TCP, TCP_USER_TIMEOUT, &time, sizeof time);
    }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    ~Connection() override {
        m_silent.Leave(m_socket);
        ::shutdown(m_socket, SHUT_RDWR);
        ::close(m_socket);
    }

    // The time for a request begins; true when its first byte is there.
    bool AwaitRequest() {
        m_silent.Enter(m_socket);
        m_end = Clock::now() + kRequestTime;
        return is_readable();
    }
    void RequestHasCome() { m_silent.Leave(m_socket); }

    bool is_readable() const override {
        return !m_read.empty() || (Await(m_socket, POLLIN, m_end) & POLLIN) != 0;
    }
    // False as well when the other side has gone, which is the end of what is never complete.
    bool is_writable() const override {
        const int ready = Await(m_socket, POLLOUT | POLLRDHUP, Clock::now() + kWriteTime);
        return (ready & POLLOUT) != 0 && (ready & (POLLRDHUP | POLLHUP | POLLERR)) == 0;
    }

    // Requests are read byte by byte, and received in larger pieces.
    ssize_t read(char* pTo, std::size_t size) override {
        if (m_read.empty()) {
            if (!is_readable()) return -1;
            const ssize_t n = ::recv(m_socket, m_buffer, sizeof m_buffer, MSG_DONTWAIT);
            if (n <= 0) return n;
            m_read = {m_buffer, static_cast<std::size_t>(n)};
        }
        const std::size_t n = m_read.copy(pTo, size);
        m_read.remove_prefix(n);
        return static_cast<ssize_t>(n);
    }

    ssize_t write(const char* pFrom, std::size_t size) override {
        RequestHasCome();
        for (;;) {
            const ssize_t n = ::send(m_socket, pFrom, size, MSG_DONTWAIT | MSG_NOSIGNAL);
            if (n >= 0 || (errno != EAGAIN && errno != EINTR)) return n;
            m_slow.Enter(m_socket);
            const int ready = Await(m_socket, POLLOUT, Clock::now() + kWriteTime);
            m_slow.Leave(m_socket);
            if (ready == 0) return -1;
        }
    }

    // Nobody asks who it is.
    void get_remote_ip_and_port(std::string&, int&) const override {}
    void get_local_ip_and_port(std::string&, int&) const override {}
    socket_t socket() const override { return m_socket; }

private:
    const int m_socket;
    WaitingRoom& m_silent;
    WaitingRoom& m_slow;
    Clock::time_point m_end;
    char m_buffer[4096];
    std::string_view m_read;  // what is left of the buffer
};

// That which the thread serves. Handlers are not told.
thread_local Connection* t_pServed = nullptr;

// The head of a request has come; where a body follows, that has to come in its time as well.
httplib::Server::HandlerResponse HearHead(const httplib::Request& request, httplib::Response&) {
    if (request.method == "GET" && t_pServed != nullptr) t_pServed->RequestHasCome();
    return httplib::Server::HandlerResponse::Unhandled;
}

}  // namespace

void WaitingRoom::Enter(int socket) {
    const std::lock_guard lock(m_mutex);
    m_sockets.push_back(socket);
    if (m_sockets.size() <= m_nPlaces) return;
    ::shutdown(m_sockets.front(), SHUT_RDWR);
    m_sockets.pop_front();
}

void WaitingRoom::Leave(int socket) {
    const std::lock_guard lock(m_mutex);
    std::erase(m_sockets, socket);
}

PatientServer::PatientServer(std::size_t nLong) : m_silent(kMostSilent), m_slow(kMostSlow) {
    const std::size_t nThreads = nLong + kMostSilent + kMostSlow + kMostWorking;
    new_task_queue = [nThreads] { return new httplib::ThreadPool(nThreads); };
    set_pre_routing_handler(HearHead);
}

void PatientServer::TakeCrowds() {
    ::listen(svr_sock_, SOMAXCONN);
}

bool PatientServer::process_and_close_socket(socket_t socket) {
    Connection connection(socket, m_silent, m_slow);
    t_pServed = &connection;
    bool bDone = true;
    for (std::size_t nLeft = kMostRequests; nLeft > 0 && connection.AwaitRequest(); --nLeft) {
        bool bClosed = false;
        bDone = process_request(connection, nLeft == 1, bClosed, nullptr);
        if (!bDone || bClosed) break;
    }
    t_pServed = nullptr;
    return bDone;
}

}  // namespace mlds_viewer
