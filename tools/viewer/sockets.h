// Listening for connections, and the connections themselves.
#ifndef MLDS_VIEWER_TOOL_SOCKETS_H
#define MLDS_VIEWER_TOOL_SOCKETS_H

#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace mlds_viewer {

/// A descriptor that is closed with its owner.
class Socket {
public:
    Socket() = default;
    explicit Socket(int fd) : m_fd(fd) {}
    Socket(Socket&& other) noexcept : m_fd(std::exchange(other.m_fd, -1)) {}
    Socket& operator=(Socket&& other) noexcept {
        std::swap(m_fd, other.m_fd);
        return *this;
    }
    ~Socket() { Close(); }

    bool isOpen() const { return m_fd >= 0; }
    int fd() const { return m_fd; }
    void Close();

    /// What has come, without waiting: some bytes, none if there are none yet. Nothing when the
    /// other side has closed or the connection is broken.
    std::optional<std::string> Receive();
    /// How many bytes the connection takes without waiting; nothing if it is broken.
    std::optional<std::size_t> Send(std::string_view bytes);

private:
    int m_fd = -1;
};

/// Listens on an IPv4 address. Port 0 takes any that is free. Throws std::system_error.
Socket Listen(const std::string& host, int port);
int PortOf(const Socket& listener);

/// A connection and the address it comes from; not open if there is none.
struct Incoming {
    Socket socket;
    std::string host;
    int port;
};
Incoming Accept(const Socket& listener);

/// False for a text that is no IPv4 address.
bool IsAddress(const std::string& host);
/// True for addresses that only this machine reaches.
bool IsLoopback(const std::string& host);

}  // namespace mlds_viewer

#endif
