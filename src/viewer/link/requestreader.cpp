// Reading the viewer's requests from bytes.
#include "viewer/link/requestreader.h"

#include <algorithm>
#include <cstring>

#include "platform/numbertext.h"
#include "viewer/link/wire.h"

namespace mlds {

namespace {

using namespace wire;

// A longer text is no request: its end is not waited for.
constexpr std::uint32_t kLongestText = 16384;

enum class Item { whole, cut, other };

// The word behind the type code: an int, or the length of a text.
std::uint32_t WordOf(std::string_view item) {
    return GetWord(reinterpret_cast<const unsigned char*>(item.data()) + 4);
}

// What the bytes begin with: an item of the type, the beginning of one, or something else.
Item Look(std::string_view bytes, ItemType type) {
    unsigned char code[4];
    PutWord(code, type);
    const std::size_t n = std::min(bytes.size(), sizeof code);
    if (n > 0 && std::memcmp(bytes.data(), code, n) != 0) return Item::other;
    if (bytes.size() < kIntItemSize) return Item::cut;
    if (type == itemInt) return Item::whole;
    const std::uint32_t length = WordOf(bytes);
    if (length > kLongestText) return Item::other;
    return bytes.size() - kIntItemSize < length ? Item::cut : Item::whole;
}

bool IsSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

const char* SkipSpaces(const char* p) {
    while (IsSpace(*p)) ++p;
    return p;
}

// Past the word that begins here.
const char* SkipWord(const char* p) {
    while (*p != '\0' && !IsSpace(*p)) ++p;
    return p;
}

int HexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

bool TakeHandle(const char*& p, std::uint32_t& handle) {
    p = SkipSpaces(p);
    if (p[0] == '0' && (p[1] == 'x' || p[1] == 'X')) p += 2;
    const char* pBegin = p;
    std::uint64_t n = 0;
    for (; n <= UINT32_MAX && HexDigit(*p) >= 0; ++p) {
        n = n << 4 | static_cast<std::uint64_t>(HexDigit(*p));
    }
    handle = static_cast<std::uint32_t>(n);
    return p != pBegin && n <= UINT32_MAX;
}

bool TakeInt(const char*& p, int& value) {
    p = SkipSpaces(p);
    if (platform::ScanInt(p, value) != platform::Scan::number) return false;
    if (*p == '-' || *p == '+') ++p;
    while (*p >= '0' && *p <= '9') ++p;
    return true;
}

}  // namespace

namespace {

// Takes one request from the front.
Item Take(std::string_view& bytes, Request& request) {
    std::string_view rest = bytes;
    Item item = Look(rest, itemInt);
    if (item != Item::whole) return item;
    request.code = static_cast<int>(WordOf(rest));
    request.text.clear();
    rest.remove_prefix(kIntItemSize);
    if (request.code == 0) return Item::other;
    if (request.code == reqSetField) {
        item = Look(rest, itemString);
        if (item == Item::cut) return item;
        // Without a text it asks for nothing, and what stands there may be the next request.
        if (item == Item::whole) {
            const std::string_view text = rest.substr(kIntItemSize, WordOf(rest));
            request.text = text.substr(0, text.find('\0'));
            rest.remove_prefix(kIntItemSize + text.size());
        }
    }
    bytes = rest;
    return Item::whole;
}

}  // namespace

RequestBatch ReadRequests(std::string_view bytes) {
    RequestBatch batch;
    Request request{};
    while (!bytes.empty()) {
        const Item item = Take(bytes, request);
        if (item == Item::whole) {
            batch.requests.push_back(request);
            continue;
        }
        if (item == Item::cut) batch.rest = bytes;
        batch.bMalformed = item == Item::other;
        break;
    }
    return batch;
}

bool ReadFieldEdit(const char* text, FieldEdit& edit) {
    int ignored = 0;
    const char* p = text;
    if (!TakeHandle(p, edit.handle) || !TakeInt(p, edit.kind)) return false;
    if (!TakeInt(p, ignored) || !TakeInt(p, edit.field)) return false;
    p = SkipSpaces(p);
    edit.value.assign(p, SkipWord(p));
    return !edit.value.empty();
}

}  // namespace mlds
