// The socket library over the system's own.
#include "platform/sockets.h"

#if defined(_WIN32)
#include <winsock2.h>
#endif

namespace mlds::platform {

int WSACleanup() {
#if defined(_WIN32)
    return ::WSACleanup();
#else
    return 0;
#endif
}

}  // namespace mlds::platform
