// The possible values of a field by text: a hash table of their positions, in a block that copies
// of the field share.
#ifndef MLDS_STREAM_NAMEINDEX_H
#define MLDS_STREAM_NAMEINDEX_H

#include <cstdint>

namespace mlds {

/// Finds the first of equal texts, as a scan from the front would.
struct NameIndex {
    /// A table for n texts, see sharedblock.h; null when memory runs out.
    static std::int32_t* Make(char* const* texts, int n) noexcept;
    /// The position of the first of the texts that equals this one, or -1. The table must have been
    /// made for them.
    static int Find(const std::int32_t* table, char* const* texts, const char* text) noexcept;
};

}  // namespace mlds

#endif
