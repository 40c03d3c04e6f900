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

#include <cerrno>
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

bool WaitFor(int fd, short events, int timeout) {
    pollfd one{fd, events, 0};
    return Resumed([&] { return ::poll(&one, 1, timeout); }) == 1;
}

}  // namespace

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
    const int on = 1;
    ::setsockopt(fd, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
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

int connect(SOCKET s, const void* pAddress) {
    sockaddr_in address;
    std::memcpy(&address, pAddress, sizeof address);
    if (address.sin_family != AF_INET) return -1;
    const int fd = Descriptor(s);
    if (::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) return 0;
    if (errno != EINTR) return -1;
    // An interrupted connection goes on by itself.
    int error = 0;
    socklen_t length = sizeof error;
    if (!WaitFor(fd, POLLOUT, -1)) return -1;
    if (::getsockopt(fd, SOL_SOCKET, SO_ERROR, &error, &length) != 0) return -1;
    return error == 0 ? 0 : -1;
}

int send(SOCKET s, const char* bytes, int n) {
    for (int nSent = 0; nSent < n;) {
        const auto rest = static_cast<std::size_t>(n - nSent);
        const ssize_t k =
            Resumed([&] { return ::send(Descriptor(s), bytes + nSent, rest, MSG_NOSIGNAL); });
        if (k <= 0) return -1;
        nSent += static_cast<int>(k);
    }
    return n;
}

int recv(SOCKET s, char* bytes, int n) {
    const auto room = static_cast<std::size_t>(n);
    return static_cast<int>(Resumed([&] { return ::recv(Descriptor(s), bytes, room, 0); }));
}

bool IsReadable(SOCKET s) {
    return WaitFor(Descriptor(s), POLLIN, 0);
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
