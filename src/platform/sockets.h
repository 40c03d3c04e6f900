// The socket library, under the names the viewer link knows.
#ifndef MLDS_PLATFORM_SOCKETS_H
#define MLDS_PLATFORM_SOCKETS_H

namespace mlds::platform {

/// Ends one use of the socket library; 0. There is nothing to shut down on POSIX systems.
int WSACleanup();

}  // namespace mlds::platform

#endif
