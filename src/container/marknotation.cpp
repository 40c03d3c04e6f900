// The mark notation: reading the items of a list.
#include "container/marknotation.h"

#include "container/notation.h"

namespace mlds {

namespace {

// The longest parts, in characters. Stream and variable names are as long as elsewhere.
constexpr std::size_t kLongestPart = 19;
constexpr std::size_t kLongestStreamName = 50;

void SkipSpaces(const char*& p) {
    while (*p == ' ') ++p;
}

bool Fits(std::string_view part) {
    return part.size() <= kLongestPart;
}

}  // namespace

bool ReadMarkPrefix(const char*& p, std::string_view& name) {
    SkipSpaces(p);
    switch (*p) {
        case '[':
            name = "phone";
            ++p;
            break;
        case '{':
            name = "inp";
            ++p;
            break;
        case '%': break;
        default: return false;
    }
    SkipSpaces(p);
    if (*p != '%') return true;
    ++p;
    name = ReadUpTo(p, " ]}");
    return name.size() <= kLongestStreamName;
}

bool MarkReader::Open() {
    SkipSpaces(m_p);
    if (*m_p != '<') return false;
    ++m_p;
    return true;
}

// A bracket right behind a value, a field or a source closes the list.
bool MarkReader::CloseAtBracket() {
    if (*m_p != ']' && *m_p != '}' && *m_p != '>') return false;
    m_bOpen = false;
    return true;
}

MarkRead MarkReader::Next(MarkItem& item) {
    item = {};
    if (!m_bOpen) return MarkRead::end;
    SkipSpaces(m_p);
    if (*m_p == '>') return MarkRead::end;
    m_pItem = m_p;
    if (*m_p != '$' && !ReadField(item)) return MarkRead::malformed;
    if (m_bOpen) {
        SkipSpaces(m_p);
        if (*m_p == '$') {
            item.bVariable = true;
            ++m_p;
            item.variable = ReadUpTo(m_p, " .]}>");
            if (item.variable.size() > kLongestName) return MarkRead::malformed;
            if (*m_p != '.') return MarkRead::noSource;
            ++m_p;
            item.source = ReadUpTo(m_p, " :]}>");
            if (!Fits(item.source)) return MarkRead::malformed;
            CloseAtBracket();
        }
    }
    if (!m_bOpen) return MarkRead::closed;
    return m_p != m_pItem ? MarkRead::item : MarkRead::malformed;
}

bool MarkReader::ReadField(MarkItem& item) {
    const std::string_view word = ReadUpTo(m_p, " :]}>");
    if (!Fits(word)) return false;
    if (*m_p != ':') {
        item.value = word;
        item.bBareValue = true;
        // An empty word is no value: a bracket there closes nothing.
        if (!word.empty()) CloseAtBracket();
        return true;
    }
    item.field = word;
    ++m_p;
    SkipSpaces(m_p);
    if (CloseAtBracket() || *m_p == '$') return true;
    if (*m_p == '\'') ++m_p;
    item.value = ReadUpTo(m_p, " ']}>");
    if (!Fits(item.value)) return false;
    if (*m_p == '\'') ++m_p;
    CloseAtBracket();
    return true;
}

}  // namespace mlds
