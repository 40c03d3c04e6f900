// A global operator new that can be made to fail. Defines the operators: include it in exactly one
// source file of a program.
#ifndef MLDS_TESTS_SUPPORT_FAILING_NEW_H
#define MLDS_TESTS_SUPPORT_FAILING_NEW_H

#include <cstddef>
#include <cstdlib>
#include <new>

namespace mlds_test {

/// How many more allocations of this thread succeed before one fails; -1 after that one, and as
/// long as none is to fail.
inline thread_local int allocationsLeft = -1;

inline void* Allocate(std::size_t size) noexcept {
    if (allocationsLeft >= 0 && allocationsLeft-- == 0) return nullptr;
    return std::malloc(size != 0 ? size : 1);
}

// Not inlined, or the compiler sees a block of `new` go to free.
[[gnu::noinline]] inline void Free(void* p) noexcept {
    std::free(p);
}

/// Runs `attempt` with its first, second, ... allocation failing, and `check(k)` after each, until
/// it makes no allocation that could fail. Returns how many failed.
template <typename Attempt, typename Check>
int FailEachAllocation(Attempt attempt, Check check) {
    for (int k = 0;; ++k) {
        allocationsLeft = k;
        attempt();
        const bool bFailed = allocationsLeft < 0;
        allocationsLeft = -1;
        if (!bFailed) return k;
        check(k);
    }
}

}  // namespace mlds_test

void* operator new(std::size_t size) {
    if (void* p = mlds_test::Allocate(size)) return p;
    throw std::bad_alloc();
}
void* operator new[](std::size_t size) {
    return operator new(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return mlds_test::Allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return mlds_test::Allocate(size);
}
void operator delete(void* p) noexcept {
    mlds_test::Free(p);
}
void operator delete[](void* p) noexcept {
    mlds_test::Free(p);
}
void operator delete(void* p, std::size_t) noexcept {
    mlds_test::Free(p);
}
void operator delete[](void* p, std::size_t) noexcept {
    mlds_test::Free(p);
}

#endif
