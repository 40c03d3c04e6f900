// The hash table behind a field's possible values: the number of cells less one, which is all ones
// in binary, and then the cells. They hold positions plus one, or 0; at most half of them are used.
#include "stream/nameindex.h"

#include <cstddef>
#include <cstring>

#include "stream/sharedblock.h"

namespace mlds {

namespace {

std::uint32_t Hash(const char* text) {
    std::uint32_t h = 5381;
    for (; *text != '\0'; ++text) h = h * 33 + static_cast<unsigned char>(*text);
    return h ^ (h >> 7);
}

// The cell that holds the text, or the empty one where it would go.
std::uint32_t FindCell(const std::int32_t* table, char* const* texts, const char* text) {
    const auto mask = static_cast<std::uint32_t>(table[0]);
    const std::int32_t* cells = table + 1;
    std::uint32_t cell = Hash(text) & mask;
    while (cells[cell] != 0 && std::strcmp(texts[cells[cell] - 1], text) != 0) {
        cell = (cell + 1) & mask;
    }
    return cell;
}

}  // namespace

std::int32_t* NameIndex::Make(char* const* texts, int n) noexcept {
    std::size_t nCells = 8;
    while (nCells < 2 * static_cast<std::size_t>(n)) nCells *= 2;
    if (nCells > (std::size_t{1} << 30)) return nullptr;
    auto* table = NewBlock<std::int32_t>(nCells + 1);
    if (table == nullptr) return nullptr;
    table[0] = static_cast<std::int32_t>(nCells - 1);
    for (int i = 0; i < n; ++i) {
        std::int32_t& cell = table[1 + FindCell(table, texts, texts[i])];
        if (cell == 0) cell = i + 1;
    }
    return table;
}

int NameIndex::Find(const std::int32_t* table, char* const* texts, const char* text) noexcept {
    return table[1 + FindCell(table, texts, text)] - 1;
}

}  // namespace mlds
