// Names and addresses of hosts.
#include <cstdio>
#include <cstring>

#include "mlds/messagesocket.h"
#include "platform/sockets.h"

using namespace mlds::platform;

namespace {

constexpr int kLongestHostName = 255;
constexpr int kDottedSize = 16;

int OwnAddresses(std::uint32_t& first) {
    char name[kLongestHostName];
    first = 0;
    return gethostname(name, sizeof name) == 0 ? AddressesOf(name, first) : 0;
}

}  // namespace

char* CMessageSocket::GetHostName(char* buffer, int length) {
    if (buffer == nullptr || length <= 0) return nullptr;
    return gethostname(buffer, length) == 0 ? buffer : nullptr;
}

int CMessageSocket::GetNumAddresses() {
    std::uint32_t first = 0;
    return OwnAddresses(first);
}

unsigned int CMessageSocket::uGetLocalIP() {
    std::uint32_t first = 0;
    OwnAddresses(first);
    return first;
}

unsigned int CMessageSocket::uGetIPFromSockAddr_In(sockaddr_in* pAddress) {
    return pAddress != nullptr ? IPOf(pAddress) : 0;
}

char* CMessageSocket::GetHostName(unsigned int address) {
    return NameOf(address);
}

char* CMessageSocket::IPString(unsigned int address, char* buffer, int length) {
    if (buffer == nullptr || length < kDottedSize) return nullptr;
    unsigned char bytes[4];
    std::memcpy(bytes, &address, sizeof bytes);
    std::memset(buffer, 0, static_cast<std::size_t>(length));
    std::snprintf(buffer, kDottedSize, "%d.%d.%d.%d", bytes[0], bytes[1], bytes[2], bytes[3]);
    return buffer;
}
