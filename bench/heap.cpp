// The replaced operator new, which counts. Its other forms come down to these.
#include "heap.h"

#include <malloc.h>

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::uint64_t> g_blocksTaken{0};
std::atomic<std::int64_t> g_bytesInUse{0};

// The heap keeps the size of every block in front of it.
std::int64_t CostOf(void* p) {
    return static_cast<std::int64_t>(malloc_usable_size(p) + sizeof(std::size_t));
}

}  // namespace

std::uint64_t bench::BlocksTaken() {
    return g_blocksTaken.load(std::memory_order_relaxed);
}

std::int64_t bench::BytesInUse() {
    return g_bytesInUse.load(std::memory_order_relaxed);
}

void* operator new(std::size_t size) {
    void* p = std::malloc(size > 0 ? size : 1);
    if (p == nullptr) throw std::bad_alloc();
    g_blocksTaken.fetch_add(1, std::memory_order_relaxed);
    g_bytesInUse.fetch_add(CostOf(p), std::memory_order_relaxed);
    return p;
}

void operator delete(void* p) noexcept {
    if (p != nullptr) g_bytesInUse.fetch_sub(CostOf(p), std::memory_order_relaxed);
    std::free(p);
}

void operator delete(void* p, std::size_t) noexcept {
    operator delete(p);
}
