// Block allocation: per-thread pools, or the global heap.
#include "stream/memory.h"

#include <cstdint>
#include <new>

#ifndef MLDS_POOLS
#define MLDS_POOLS 0
#endif

#if MLDS_POOLS
#include <mutex>
#endif

namespace mlds {

#if MLDS_POOLS

namespace {

constexpr std::size_t kStep = 16;           // sizes are rounded up to a multiple of this
constexpr std::size_t kLargestBlock = 512;  // larger ones go to the heap
constexpr std::size_t kLists = kLargestBlock / kStep;
constexpr std::size_t kChunk = 64 * 1024;

struct FreeBlockHeader {
    FreeBlockHeader* pNext;
};

// Plain data, so that it works before and after the constructors and destructors of a thread.
struct Pool {
    FreeBlockHeader* pFree[kLists];
    std::byte* pFresh;  // the part of the last chunk that was never handed out
    std::byte* pFreshEnd;
    bool bKept;  // what is left at the end of the thread will be kept
};

#if defined(__GNUC__) && !defined(_WIN32)
// The library may be loaded late, but this is small enough for the room kept for such variables,
// and saves a call on every allocation.
[[gnu::tls_model("initial-exec")]]
#endif
thread_local constinit Pool t_pool{};

// What threads that ended left behind, for those that need a new chunk. Touched only then.
constinit std::mutex g_leftoverMutex;
constinit Pool g_leftover{};

void Prepend(FreeBlockHeader*& pList, FreeBlockHeader* pAdded) {
    FreeBlockHeader* pTail = pAdded;
    while (pTail->pNext != nullptr) pTail = pTail->pNext;
    pTail->pNext = pList;
    pList = pAdded;
}

// Turns what is left of the last chunk into free blocks.
void RetireFresh(Pool& pool) {
    while (pool.pFresh != pool.pFreshEnd) {
        std::size_t size = static_cast<std::size_t>(pool.pFreshEnd - pool.pFresh);
        if (size > kLargestBlock) size = kLargestBlock;
        FreeBlockHeader*& pList = pool.pFree[size / kStep - 1];
        pList = new (pool.pFresh) FreeBlockHeader{pList};
        pool.pFresh += size;
    }
}

void MoveAll(Pool& from, Pool& to) {
    for (std::size_t i = 0; i < kLists; ++i) {
        if (from.pFree[i] == nullptr) continue;
        Prepend(to.pFree[i], from.pFree[i]);
        from.pFree[i] = nullptr;
    }
}

// At the end of a thread, its free blocks are kept for others.
struct PoolKeeper {
    ~PoolKeeper() {
        RetireFresh(t_pool);
        const std::lock_guard lock(g_leftoverMutex);
        MoveAll(t_pool, g_leftover);
    }
};

void KeepAtEndOfThread() noexcept {
    static thread_local PoolKeeper keeper;
    static_cast<void>(keeper);
    t_pool.bKept = true;
}

void* AllocateSlowly(std::size_t list) noexcept {
    Pool& pool = t_pool;
    KeepAtEndOfThread();
    {
        const std::lock_guard lock(g_leftoverMutex);
        MoveAll(g_leftover, pool);
    }
    if (FreeBlockHeader* p = pool.pFree[list]) {
        pool.pFree[list] = p->pNext;
        return p;
    }
    void* pChunk = ::operator new(kChunk, std::nothrow);
    if (pChunk == nullptr) return nullptr;
    RetireFresh(pool);
    pool.pFresh = static_cast<std::byte*>(pChunk) + (list + 1) * kStep;
    pool.pFreshEnd = static_cast<std::byte*>(pChunk) + kChunk;
    return pChunk;
}

std::size_t ListFor(std::size_t size) {
    return size == 0 ? 0 : (size - 1) / kStep;
}

}  // namespace

void* AllocateBlock(std::size_t size) noexcept {
    if (size > kLargestBlock) return ::operator new(size, std::nothrow);
    const std::size_t list = ListFor(size);
    Pool& pool = t_pool;
    if (FreeBlockHeader* p = pool.pFree[list]) {
        pool.pFree[list] = p->pNext;
        return p;
    }
    const std::size_t rounded = (list + 1) * kStep;
    if (static_cast<std::size_t>(pool.pFreshEnd - pool.pFresh) >= rounded) {
        std::byte* p = pool.pFresh;
        pool.pFresh += rounded;
        return p;
    }
    return AllocateSlowly(list);
}

void FreeBlock(void* p, std::size_t size) noexcept {
    if (p == nullptr) return;
    if (size > kLargestBlock) {
        ::operator delete(p);
        return;
    }
    Pool& pool = t_pool;
    if (!pool.bKept) KeepAtEndOfThread();  // a thread may free what others allocated
    FreeBlockHeader*& pList = pool.pFree[ListFor(size)];
    pList = new (p) FreeBlockHeader{pList};
}

#else

void* AllocateBlock(std::size_t size) noexcept {
    return ::operator new(size, std::nothrow);
}

void FreeBlock(void* p, std::size_t) noexcept {
    ::operator delete(p);
}

#endif

}  // namespace mlds
