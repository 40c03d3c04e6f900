// The bounds of the calling thread's stack, asked of the system once per thread.
#include "platform/stackbounds.h"

#include <algorithm>

#if defined(_WIN32)
#include <windows.h>
#else
#include <pthread.h>
#endif

namespace mlds::platform {

namespace {

constexpr std::uintptr_t kReserve = 256 * 1024;
constexpr std::uintptr_t kUnknownStack = 64 * 1024;
// Stacks can be unlimited. What nests deeper than this does not end either.
constexpr std::uintptr_t kMostUsed = 8 * 1024 * 1024;

struct Bounds {
    std::uintptr_t low;
    std::uintptr_t high;
    std::uintptr_t limit;
};

#if defined(__GNUC__) && !defined(_WIN32)
[[gnu::tls_model("initial-exec")]]
#endif
thread_local constinit Bounds t_bounds{};

bool Ask(std::uintptr_t& low, std::uintptr_t& high) noexcept {
#if defined(_WIN32)
    ULONG_PTR l = 0;
    ULONG_PTR h = 0;
    GetCurrentThreadStackLimits(&l, &h);
    low = l;
    high = h;
    return true;
#else
    pthread_attr_t attributes;
    if (pthread_getattr_np(pthread_self(), &attributes) != 0) return false;
    void* pLow = nullptr;
    std::size_t size = 0;
    const bool bKnown = pthread_attr_getstack(&attributes, &pLow, &size) == 0;
    pthread_attr_destroy(&attributes);
    low = reinterpret_cast<std::uintptr_t>(pLow);
    high = low + size;
    return bKnown;
#endif
}

}  // namespace

std::uintptr_t StackLimit() noexcept {
    const std::uintptr_t here = StackPointer();
    Bounds& bounds = t_bounds;
    if (bounds.high == 0 && Ask(bounds.low, bounds.high)) {
        const std::uintptr_t size = bounds.high - bounds.low;
        bounds.limit = bounds.low + std::min(kReserve, size / 2);
    }
    if (here >= bounds.low && here < bounds.high) {
        return std::max(bounds.limit, here - std::min(here, kMostUsed));
    }
    return here > kUnknownStack ? here - kUnknownStack : 0;
}

}  // namespace mlds::platform
