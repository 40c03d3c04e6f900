// Memory for what comes and goes by the thousand: stream objects, their values, sync tables.
//
// With MLDS_POOLS, blocks come from pools of the calling thread, without locks; a block may be
// freed by another thread and then joins that thread's pool. Without, every block is one block of
// the global operator new, so that memory checkers see every mistake.
#ifndef MLDS_STREAM_MEMORY_H
#define MLDS_STREAM_MEMORY_H

#include <cstddef>

namespace mlds {

/// Uninitialised memory, aligned for pointers; null when memory runs out.
void* AllocateBlock(std::size_t size) noexcept;
/// `size` must be the size that the block was allocated with. Null is ignored.
void FreeBlock(void* p, std::size_t size) noexcept;

}  // namespace mlds

#endif
