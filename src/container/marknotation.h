// The mark notation: reading the items of a list like <stress:1 $v.tone>.
//
// Only the text is read here; what its names stand for is the caller's business.
#ifndef MLDS_CONTAINER_MARKNOTATION_H
#define MLDS_CONTAINER_MARKNOTATION_H

#include <string_view>

namespace mlds {

/// One item: a field part, a variable part, or both.
struct MarkItem {
    std::string_view field;     // the target
    std::string_view value;     // of the field part
    bool bBareValue = false;    // no field was named: any that knows the value
    bool bVariable = false;     // there is a variable part
    std::string_view variable;  // the source: a field of the token in a variable
    std::string_view source;
};

enum class MarkRead {
    item,       // an item was read
    closed,     // an item was read, and the list is closed behind it
    end,        // there are no more items
    noSource,   // a variable without a '.': what went before holds
    malformed,  // the list is not closed, or a part is too long
};

class MarkReader {
public:
    explicit MarkReader(const char* text) : m_p(text) {}

    /// Moves past the '<' that opens the list. False if there is none.
    bool Open();
    MarkRead Next(MarkItem& item);
    const char* Position() const { return m_p; }
    /// Where the item that was read last begins.
    const char* ItemStart() const { return m_pItem; }

private:
    bool ReadField(MarkItem& item);
    bool CloseAtBracket();

    const char* m_p;
    const char* m_pItem = m_p;
    bool m_bOpen = true;
};

/// Reads the prefix that selects a stream: `name` is the stream's name, empty if none was given.
/// Leaves `p` behind it. False for anything else and for a name that is too long.
bool ReadMarkPrefix(const char*& p, std::string_view& name);

}  // namespace mlds

#endif
