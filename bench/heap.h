// What the whole program takes from the heap through operator new, the library included.
#ifndef MLDS_BENCH_HEAP_H
#define MLDS_BENCH_HEAP_H

#include <cstdint>

namespace bench {

/// How many blocks have been taken so far.
std::uint64_t BlocksTaken();
/// What the blocks in use cost, the heap's own share of each included.
std::int64_t BytesInUse();

}  // namespace bench

#endif
