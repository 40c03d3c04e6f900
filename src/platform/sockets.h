// The socket library, under the names the viewer link knows.
//
// Calls that a signal interrupts are resumed. Sockets are closed on exec, never one of the
// descriptors 0 to 2 (0 stands for "closed"), and sending raises no signal.
#ifndef MLDS_PLATFORM_SOCKETS_H
#define MLDS_PLATFORM_SOCKETS_H

#include <cstdint>

struct sockaddr_in;

namespace mlds::platform {

using SOCKET = std::intptr_t;
constexpr SOCKET INVALID_SOCKET = -1;
/// The bytes of a sockaddr_in.
constexpr int kAddressSize = 16;

struct WSADATA {
    std::uint16_t wVersion;  // major version in the low byte
};

/// The time up to which a call may wait. By default it may without end.
class Deadline {
public:
    Deadline() = default;
    /// So many milliseconds from now; without end for 0 and less.
    static Deadline In(int milliseconds);
    bool HasPassed() const;
    /// The milliseconds that are left, rounded up; -1 without end.
    int Left() const;

private:
    std::int64_t m_nAt = kNever;  // nanoseconds of a clock that nobody sets
    static constexpr std::int64_t kNever = INT64_MAX;
};

/// Begins one use of the socket library; 0 and the version granted, or an error.
int WSAStartup(std::uint16_t wVersionRequested, WSADATA* pData);
/// Ends one use; 0. There is nothing to shut down on POSIX systems.
int WSACleanup();

/// A stream socket for IPv4, or INVALID_SOCKET. It sends without delay, and asks an idle other side
/// for signs of life, so that one whose machine is gone is noticed within about a minute.
SOCKET StreamSocket();
/// Fills in an address of kAddressSize bytes from dotted text; false if it is none.
bool MakeAddress(void* pAddress, const char* dotted, int port);
/// 0, or -1. The address must have been made.
int connect(SOCKET s, const void* pAddress, const Deadline& deadline = {});
/// Sends all n bytes; n, or -1 if the connection does not take them in time.
int send(SOCKET s, const char* bytes, int n, const Deadline& deadline = {});
/// Waits for bytes and takes at most n: their number, 0 when the other side has closed, or -1.
int recv(SOCKET s, char* bytes, int n, const Deadline& deadline = {});
/// True if recv would not wait.
bool IsReadable(SOCKET s);
/// True if the other side has closed, or the connection is broken, and nothing is left to receive.
bool HasEnded(SOCKET s);
int closesocket(SOCKET s);

/// The host's name; 0, or -1 if it does not fit.
int gethostname(char* name, int length);
/// The number of IPv4 addresses of a host, and the first of them as it goes over the wire; 0 if the
/// look-up fails.
int AddressesOf(const char* host, std::uint32_t& first);
/// The name of a host, or null. Valid until the thread's next call.
char* NameOf(std::uint32_t address);
std::uint32_t IPOf(const sockaddr_in* pAddress);

}  // namespace mlds::platform

#endif
