// Arrays that memberwise copies share: counted, and freed with the last that uses them.
//
// The count stands in front of the elements, so that a member is still a plain pointer to the
// first.
#ifndef MLDS_STREAM_SHAREDBLOCK_H
#define MLDS_STREAM_SHAREDBLOCK_H

#include <cstddef>
#include <new>
#include <type_traits>

namespace mlds {

namespace detail {

struct alignas(std::max_align_t) BlockHeader {
    std::size_t nUsers;
};

inline BlockHeader* HeaderOf(void* pElements) {
    return static_cast<BlockHeader*>(pElements) - 1;
}

}  // namespace detail

/// n zeroed elements with one user; null when memory runs out. n may be 0.
template <typename T>
T* NewBlock(std::size_t n) noexcept {
    static_assert(std::is_trivially_destructible_v<T>);
    if (n > (std::size_t{1} << 31)) return nullptr;
    void* p = ::operator new(sizeof(detail::BlockHeader) + n * sizeof(T), std::nothrow);
    if (p == nullptr) return nullptr;
    T* pElements = reinterpret_cast<T*>(new (p) detail::BlockHeader{1} + 1);
    for (std::size_t i = 0; i < n; ++i) new (pElements + i) T{};
    return pElements;
}

/// The same block for one more user. Null stays null.
template <typename T>
T* ShareBlock(T* pElements) noexcept {
    if (pElements != nullptr) ++detail::HeaderOf(pElements)->nUsers;
    return pElements;
}

/// How many use the block.
template <typename T>
std::size_t ShareCount(T* pElements) noexcept {
    return detail::HeaderOf(pElements)->nUsers;
}

/// Ends one use; the last frees the block. Null is ignored.
template <typename T>
void DropBlock(T* pElements) noexcept {
    if (pElements == nullptr) return;
    detail::BlockHeader* pHeader = detail::HeaderOf(pElements);
    if (--pHeader->nUsers == 0) ::operator delete(pHeader);
}

}  // namespace mlds

#endif
