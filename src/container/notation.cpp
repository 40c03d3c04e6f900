// The string notation, character by character.
#include "container/notation.h"

#include <cstring>

namespace mlds {

std::string_view ReadUpTo(const char*& p, const char* stops) {
    const char* begin = p;
    p += std::strcspn(p, stops);
    return {begin, static_cast<std::size_t>(p - begin)};
}

void NotationReader::SkipSpaces() {
    while (*m_p == ' ') ++m_p;
}

bool NotationReader::ReadPart(Item& item, ItemKind kind, const char* stops, std::size_t longest) {
    item.kind = kind;
    item.part = ReadUpTo(m_p, stops);
    return item.part.size() <= longest || Malformed("a name is too long");
}

bool NotationReader::Next(Item& item) {
    item = {};
    while (*m_p == ' ' || *m_p == '>') ++m_p;
    m_pItem = m_p;
    switch (*m_p) {
        case '\0':
        case ']':
        case '}': item.kind = ItemKind::end; return true;
        case '%': ++m_p; return ReadPart(item, ItemKind::streamSwitch, " ]}", kLongestName);
        case '$': ++m_p; return ReadPart(item, ItemKind::copy, " ]}>", kLongestName);
        case '<': ++m_p; return ReadFieldList(item);
        case '\'': item.kind = ItemKind::token; return ReadQuoted(item.part);
        case '!':
            if (m_p[1] != '^') return ReadPlain(item);
            m_p += 2;
            return ReadPart(item, ItemKind::binding, " ]}", kLongestName);
        default: return ReadPlain(item);
    }
}

bool NotationReader::ReadPlain(Item& item) {
    item.kind = ItemKind::token;
    item.bPlain = true;
    std::size_t length = 0;
    if (m_nNameType == fvEnum || m_nNameType == fvChar) {
        length = 1;
    } else if (m_nNameType == fvInt) {
        length = std::strspn(m_p, "0123456789");
    }
    item.part = {m_p, length};
    m_p += length;
    if (length > kLongestTokenName) return Malformed("a name is too long");
    if (length > 0) return true;
    return Malformed(m_nNameType == fvInt ? "a name of this stream is a number"
                     : m_nNameType < 0    ? "the stream has no field \"name\""
                                          : "names of this stream have to be quoted");
}

// A quote in a row with another is the name of one apostrophe.
bool NotationReader::ReadQuoted(std::string_view& name) {
    ++m_p;
    if (*m_p == '\'') {
        name = {m_p, 1};
        ++m_p;
        return true;
    }
    name = ReadUpTo(m_p, "'");
    if (*m_p == '\0') return Malformed("a quote is not closed");
    ++m_p;
    return name.size() <= kLongestTokenName || Malformed("a name is too long");
}

bool NotationReader::ReadFieldList(Item& item) {
    SkipSpaces();
    if (*m_p == '$') {
        // A copy takes no fields: whatever follows its name is read as items.
        ++m_p;
        return ReadPart(item, ItemKind::copy, " ]}>", kLongestName);
    }
    item.kind = ItemKind::fieldList;
    if (std::strncmp(m_p, "name:", 5) == 0) m_p += 5;
    if (*m_p == '\'') {
        if (!ReadQuoted(item.part)) return false;
    } else {
        item.part = ReadUpTo(m_p, " >");
        if (item.part.size() > kLongestTokenName) return Malformed("a name is too long");
    }
    item.fields = m_p;
    FieldEntry entry;
    while (NextField(m_p, entry)) {
        if (entry.word.size() > kLongestFieldName || entry.value.size() > kLongestValue) {
            return Malformed("a field or its value is too long");
        }
    }
    return *m_p == '>' || Malformed("a field list is not closed");
}

bool NotationReader::NextField(const char*& p, FieldEntry& entry) {
    while (*p == ' ') ++p;
    if (*p == '>' || *p == '\0') return false;
    entry = {};
    entry.word = ReadUpTo(p, " :>");
    if (*p != ':') return true;
    ++p;
    entry.bHasValue = true;
    entry.value = ReadUpTo(p, " >");
    return true;
}

}  // namespace mlds
