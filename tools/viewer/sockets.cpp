// Sockets of the system.
#include "sockets.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace mlds_viewer {

namespace {

constexpr int kBacklog = 8;

void SetOn(int fd, int level, int option) {
    const int on = 1;
    ::setsockopt(fd, level, option, &on, sizeof on);
}

bool WouldWait() {
    return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
}

[[noreturn]] void Fail(const std::string& what) {
    throw std::system_error(errno, std::generic_category(), what);
}

sockaddr_in AddressOf(const std::string& host, int port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    ::inet_pton(AF_INET, host.c_str(), &address.sin_addr);
    return address;
}

}  // namespace

void Socket::Close() {
    if (m_fd >= 0) ::close(m_fd);
    m_fd = -1;
}

std::optional<std::string> Socket::Receive() {
    std::string bytes(65536, '\0');
    const ssize_t n = ::recv(m_fd, bytes.data(), bytes.size(), MSG_DONTWAIT);
    if (n == 0 || (n < 0 && !WouldWait())) return std::nullopt;
    bytes.resize(n > 0 ? static_cast<std::size_t>(n) : 0);
    return bytes;
}

std::optional<std::size_t> Socket::Send(std::string_view bytes) {
    const ssize_t n = ::send(m_fd, bytes.data(), bytes.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    if (n >= 0) return static_cast<std::size_t>(n);
    return WouldWait() ? std::optional<std::size_t>(0) : std::nullopt;
}

Socket Listen(const std::string& host, int port) {
    const std::string place = host + ':' + std::to_string(port);
    Socket listener(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (!listener.isOpen()) Fail("cannot make a socket");
    SetOn(listener.fd(), SOL_SOCKET, SO_REUSEADDR);
    const sockaddr_in address = AddressOf(host, port);
    const auto* pAddress = reinterpret_cast<const sockaddr*>(&address);
    if (::bind(listener.fd(), pAddress, sizeof address) != 0 ||
        ::listen(listener.fd(), kBacklog) != 0) {
        Fail("cannot listen on " + place);
    }
    return listener;
}

int PortOf(const Socket& listener) {
    sockaddr_in address{};
    socklen_t size = sizeof address;
    if (::getsockname(listener.fd(), reinterpret_cast<sockaddr*>(&address), &size) != 0) {
        Fail("getsockname");
    }
    return ntohs(address.sin_port);
}

Incoming Accept(const Socket& listener) {
    sockaddr_in address{};
    socklen_t size = sizeof address;
    Incoming incoming{Socket(::accept4(listener.fd(), reinterpret_cast<sockaddr*>(&address), &size,
                                       SOCK_CLOEXEC)),
                      "", ntohs(address.sin_port)};
    if (!incoming.socket.isOpen()) return incoming;
    // Whoever waits for an acknowledgement waits for every delay.
    SetOn(incoming.socket.fd(), IPPROTO_TCP, TCP_NODELAY);
    SetOn(incoming.socket.fd(), SOL_SOCKET, SO_KEEPALIVE);
    char text[INET_ADDRSTRLEN] = "";
    ::inet_ntop(AF_INET, &address.sin_addr, text, sizeof text);
    incoming.host = text;
    return incoming;
}

bool IsAddress(const std::string& host) {
    in_addr address{};
    return ::inet_pton(AF_INET, host.c_str(), &address) == 1;
}

bool IsLoopback(const std::string& host) {
    in_addr address{};
    return ::inet_pton(AF_INET, host.c_str(), &address) == 1 &&
           ntohl(address.s_addr) >> 24 == IN_LOOPBACKNET;
}

}  // namespace mlds_viewer
