// The socket library over POSIX sockets.
#include "platform/sockets.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <climits>
#include <cstring>

namespace mlds::platform {

namespace {

static_assert(sizeof(sockaddr_in) == kAddressSize);

// Calls again as long as a signal interrupts.
template <typename F>
auto Resumed(F call) {
    auto result = call();
    while (result < 0 && errno == EINTR) result = call();
    return result;
}

int Descriptor(SOCKET s) {
    return static_cast<int>(s);
}

// True once one of the events has come. A signal takes nothing from the time that is left.
bool WaitFor(int fd, short events, const Deadline& deadline) {
    pollfd one{fd, events, 0};
    return Resumed([&] { return ::poll(&one, 1, deadline.Left()); }) == 1;
}

void SetOption(int fd, int level, int option, int value) {
    // What a system refuses makes the connection worse, not wrong.
    ::setsockopt(fd, level, option, &value, sizeof value);
}

void KeepAlive(int fd) {
    SetOption(fd, SOL_SOCKET, SO_KEEPALIVE, 1);
#ifdef TCP_KEEPIDLE
    // The usual first question comes after two hours.
    SetOption(fd, IPPROTO_TCP, TCP_KEEPIDLE, 30);
    SetOption(fd, IPPROTO_TCP, TCP_KEEPINTVL, 10);
    SetOption(fd, IPPROTO_TCP, TCP_KEEPCNT, 3);
#endif
}

// 0, or -1 if there is no connection in time.
int FinishConnecting(int fd, const Deadline& deadline) {
    int error = 0;
    socklen_t length = sizeof error;
    if (!WaitFor(fd, POLLOUT, deadline)) return -1;
    if (::getsockopt(fd, SOL_SOCKET, SO_ERROR, &error, &length) != 0) return -1;
    return error == 0 ? 0 : -1;
}

std::int64_t Now() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::nanoseconds>(now).count();
}

constexpr std::int64_t kMillisecond = 1'000'000;  // in nanoseconds

}  // namespace

Deadline Deadline::In(int milliseconds) {
    Deadline deadline;
    if (milliseconds > 0) deadline.m_nAt = Now() + milliseconds * kMillisecond;
    return deadline;
}

bool Deadline::HasPassed() const {
    return m_nAt != kNever && Now() >= m_nAt;
}

int Deadline::Left() const {
    if (m_nAt == kNever) return -1;
    const std::int64_t left = (m_nAt - Now() + kMillisecond - 1) / kMillisecond;
    return static_cast<int>(std::clamp<std::int64_t>(left, 0, INT_MAX));
}

int WSAStartup(std::uint16_t wVersionRequested, WSADATA* pData) {
    pData->wVersion = wVersionRequested;
    return 0;
}

int WSACleanup() {
    return 0;
}

SOCKET StreamSocket() {
    int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd >= 0 && fd <= STDERR_FILENO) {
        // A host may have closed its standard streams; what it opens there later is not for us.
        const int higher = ::fcntl(fd, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
        ::close(fd);
        fd = higher;
    }
    if (fd < 0) return INVALID_SOCKET;
    SetOption(fd, IPPROTO_TCP, TCP_NODELAY, 1);
    KeepAlive(fd);
    return fd;
}

bool MakeAddress(void* pAddress, const char* dotted, int port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = ::inet_addr(dotted);
    std::memcpy(pAddress, &address, sizeof address);
    return address.sin_addr.s_addr != INADDR_NONE;
}

int connect(SOCKET s, const void* pAddress, const Deadline& deadline) {
    sockaddr_in address;
    std::memcpy(&address, pAddress, sizeof address);
    if (address.sin_family != AF_INET) return -1;
    const int fd = Descriptor(s);
    const int flags = ::fcntl(fd, F_GETFL);
    if (flags == -1 || ::fcntl(fd, F_SETFL, flags | O_NONBLOCK) == -1) return -1;
    int result = ::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    if (result != 0 && (errno == EINPROGRESS || errno == EINTR)) {
        result = FinishConnecting(fd, deadline);
    }
    ::fcntl(fd, F_SETFL, flags);
    return result == 0 ? 0 : -1;
}

int send(SOCKET s, const char* bytes, int n, const Deadline& deadline) {
    const int fd = Descriptor(s);
    for (int nSent = 0; nSent < n;) {
        const auto rest = static_cast<std::size_t>(n - nSent);
        const ssize_t k =
            Resumed([&] { return ::send(fd, bytes + nSent, rest, MSG_NOSIGNAL | MSG_DONTWAIT); });
        if (k > 0) {
            nSent += static_cast<int>(k);
        } else if ((errno != EAGAIN && errno != EWOULDBLOCK) || deadline.HasPassed() ||
                   !WaitFor(fd, POLLOUT, deadline)) {
            return -1;
        }
    }
    return n;
}

int recv(SOCKET s, char* bytes, int n, const Deadline& deadline) {
    const int fd = Descriptor(s);
    const auto room = static_cast<std::size_t>(n);
    if (deadline.Left() >= 0 && !WaitFor(fd, POLLIN, deadline)) return -1;
    return static_cast<int>(Resumed([&] { return ::recv(fd, bytes, room, 0); }));
}

bool IsReadable(SOCKET s) {
    pollfd one{Descriptor(s), POLLIN, 0};
    return Resumed([&] { return ::poll(&one, 1, 0); }) == 1;
}

bool HasEnded(SOCKET s) {
    char next;
    const ssize_t k =
        Resumed([&] { return ::recv(Descriptor(s), &next, 1, MSG_PEEK | MSG_DONTWAIT); });
    return k == 0 || (k < 0 && errno != EAGAIN && errno != EWOULDBLOCK);
}

int closesocket(SOCKET s) {
    return ::close(Descriptor(s));
}

int gethostname(char* name, int length) {
    const auto size = static_cast<std::size_t>(length);
    // A name that was cut need not be terminated.
    if (::gethostname(name, size) != 0 || std::memchr(name, '\0', size) == nullptr) return -1;
    return 0;
}

int AddressesOf(const char* host, std::uint32_t& first) {
    addrinfo hints{};
    hints.ai_family = AF_INET;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* pList = nullptr;
    first = 0;
    if (::getaddrinfo(host, nullptr, &hints, &pList) != 0) return 0;
    int n = 0;
    for (const addrinfo* p = pList; p != nullptr; p = p->ai_next) {
        if (n++ > 0) continue;
        sockaddr_in address;
        std::memcpy(&address, p->ai_addr, sizeof address);
        first = IPOf(&address);
    }
    ::freeaddrinfo(pList);
    return n;
}

char* NameOf(std::uint32_t address) {
    static thread_local char name[NI_MAXHOST];
    sockaddr_in host{};
    host.sin_family = AF_INET;
    host.sin_addr.s_addr = address;
    const int result = ::getnameinfo(reinterpret_cast<const sockaddr*>(&host), sizeof host, name,
                                     sizeof name, nullptr, 0, NI_NAMEREQD);
    return result == 0 ? name : nullptr;
}

std::uint32_t IPOf(const sockaddr_in* pAddress) {
    return pAddress->sin_addr.s_addr;
}

}  // namespace mlds::platform
