// How deep the calling thread may still nest calls.
#ifndef MLDS_PLATFORM_STACKBOUNDS_H
#define MLDS_PLATFORM_STACKBOUNDS_H

#include <cstdint>

#if defined(_MSC_VER)
#include <intrin.h>
#endif

namespace mlds::platform {

/// Where the stack of the calling function stands. Stacks grow downwards.
#if defined(_MSC_VER)
inline std::uintptr_t StackPointer() {
    return reinterpret_cast<std::uintptr_t>(_AddressOfReturnAddress());
}
#elif defined(__x86_64__)
// Asking for the frame would give every function that asks a frame pointer.
inline std::uintptr_t StackPointer() {
    std::uintptr_t here;
    asm("mov %%rsp, %0" : "=r"(here));
    return here;
}
#else
inline std::uintptr_t StackPointer() {
    return reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
}
#endif

/// The value below which StackPointer should not get: the end of the thread's stack plus a reserve
/// for what is called from there. On a stack that is not the thread's own, a modest distance.
std::uintptr_t StackLimit() noexcept;

}  // namespace mlds::platform

#endif
