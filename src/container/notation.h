// The string notation: reading the items of a text.
//
// The reader knows the notation and nothing of streams and variables. A text is read twice, once to
// check it whole before anything is touched, and once to carry it out, so both readings must agree:
// everything that depends on the text alone is settled here.
#ifndef MLDS_CONTAINER_NOTATION_H
#define MLDS_CONTAINER_NOTATION_H

#include <cstddef>
#include <string_view>

#include "mlds/field.h"

namespace mlds {

// The longest parts of a text, in characters.
constexpr std::size_t kLongestTokenName = 19;
constexpr std::size_t kLongestFieldName = 19;
constexpr std::size_t kLongestValue = 31;
constexpr std::size_t kLongestName = 51;  // of a stream or a variable

/// A part of a text as a string of its own. The part must not be longer than kLongestName.
class PartText {
public:
    explicit PartText(std::string_view part) { m_text[part.copy(m_text, kLongestName)] = '\0'; }
    operator const char*() const { return m_text; }

private:
    char m_text[kLongestName + 1];
};

enum class ItemKind {
    end,           // the text is over
    streamSwitch,  // part: the stream's name
    token,         // part: the token's name; a plain or quoted one
    fieldList,     // part: the token's name; fields: what follows it, up to '>'
    copy,          // part: the variable's name
    binding        // part: the variable's name
};

struct Item {
    ItemKind kind;
    std::string_view part;
    const char* fields = nullptr;
    bool bPlain = false;  // a token that may be refused with consequences
};

/// One entry of a field list: a word, and the value after its ':'.
struct FieldEntry {
    std::string_view word;
    std::string_view value;
    bool bHasValue = false;
};

/// Reads the items of a text, after its stream prefix.
class NotationReader {
public:
    /// `nameType` is the type of the target stream's name field, which decides where a plain token
    /// ends; -1 if the stream has no such field.
    NotationReader(const char* text, int nameType) : m_p(text), m_nNameType(nameType) {}

    /// Reads the next item. False if the text is malformed there: an unclosed quote or list, a part
    /// that is too long, or a plain token that the stream's names cannot express.
    bool Next(Item& item);
    /// Where the item that was read last begins, and what is wrong with it if it is malformed.
    const char* ItemStart() const { return m_pItem; }
    const char* Fault() const { return m_szFault; }

    /// Reads the next entry of a field list and moves past it. False at the closing '>' and where
    /// the list is malformed, which `p` then tells apart.
    static bool NextField(const char*& p, FieldEntry& entry);

private:
    bool ReadPart(Item& item, ItemKind kind, const char* stops, std::size_t longest);
    bool ReadQuoted(std::string_view& name);
    bool ReadPlain(Item& item);
    bool ReadFieldList(Item& item);
    void SkipSpaces();
    bool Malformed(const char* fault) {
        m_szFault = fault;
        return false;
    }

    const char* m_p;
    int m_nNameType;
    const char* m_pItem = m_p;
    const char* m_szFault = "";
};

/// The characters of `p` up to, not including, the first of `stops` or the end. Moves past them.
std::string_view ReadUpTo(const char*& p, const char* stops);

}  // namespace mlds

#endif
