// The words of one line.
#include "scan.h"

#include <charconv>
#include <cstdint>

namespace mlds_testasm {

namespace {

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

// Letters, and whatever is not ASCII: names are in the encoding of their container.
bool IsWordStart(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' ||
           static_cast<unsigned char>(c) >= 0x80;
}

bool IsInWord(char c) {
    return IsWordStart(c) || IsDigit(c) || c == '-';
}

std::size_t EndOfWord(std::string_view text, std::size_t at) {
    while (at < text.size() && IsInWord(text[at])) ++at;
    return at;
}

Lex KindOf(char c) {
    switch (c) {
        case '%': return Lex::stream;
        case '^': return Lex::mark;
        case '$': return Lex::token;
        case '.': return Lex::dot;
        case ':': return Lex::colon;
        default: return Lex::end;
    }
}

}  // namespace

Line::Line(std::string_view text, int number, Diagnostics& diagnostics)
    : m_number(number), m_diagnostics(diagnostics) {
    if (!Scan(text)) m_lexemes.assign(1, {});
}

bool Line::Scan(std::string_view text) {
    std::size_t at = 0;
    while (at < text.size() && text[at] != ';' && text[at] != '#') {
        const char c = text[at];
        const std::size_t begin = at;
        if (c == ' ' || c == '\t' || c == '\r') {
            ++at;
            continue;
        }
        Lexeme lexeme;
        lexeme.column = static_cast<int>(begin) + 1;
        if (IsDigit(c) || (c == '-' && at + 1 < text.size() && IsDigit(text[at + 1]))) {
            lexeme.kind = Lex::number;
            at = EndOfWord(text, at + 1);
            const char* pEnd = text.data() + at;
            const auto result = std::from_chars(text.data() + begin, pEnd, lexeme.number);
            if (result.ec != std::errc() || result.ptr != pEnd) {
                return Fail(begin, "expected a number from -2147483648 to 2147483647");
            }
        } else {
            lexeme.kind = IsWordStart(c) ? Lex::word : KindOf(c);
            const bool bName =
                lexeme.kind == Lex::stream || lexeme.kind == Lex::mark || lexeme.kind == Lex::token;
            if (bName) ++at;
            const char first = at < text.size() ? text[at] : ' ';
            if (first == '\'' || first == '"') {
                if (!bName) lexeme.kind = Lex::text;
                at = ScanQuoted(text, at, &lexeme);
                if (at == 0) return false;
            } else if (IsWordStart(first) || (bName && IsDigit(first))) {
                const std::size_t end = EndOfWord(text, at);
                lexeme.text = text.substr(at, end - at);
                at = end;
            } else if (bName) {
                return Fail(at, std::string("expected a name behind '") + c + "'");
            } else if (lexeme.kind == Lex::end) {
                return Fail(at, "unknown character " + Quoted(text.substr(at, 1), true));
            } else {
                ++at;
            }
        }
        lexeme.source = text.substr(begin, at - begin);
        m_lexemes.push_back(std::move(lexeme));
    }
    Lexeme end;
    end.column = static_cast<int>(at) + 1;
    m_lexemes.push_back(end);
    return true;
}

// Between quotes \xHH is any byte, and a backslash makes the next character ordinary. The place
// behind the closing quote, or 0.
std::size_t Line::ScanQuoted(std::string_view text, std::size_t at, Lexeme* pLexeme) {
    const std::size_t begin = at;
    const char quote = text[at++];
    for (; at < text.size() && text[at] != quote; ++at) {
        char c = text[at];
        if (c == '\\' && at + 1 < text.size()) {
            c = text[++at];
            if (c == 'x') {
                unsigned code = 0;
                const std::string_view digits = text.substr(at + 1, 2);
                const char* pEnd = digits.data() + digits.size();
                const auto result = std::from_chars(digits.data(), pEnd, code, 16);
                if (digits.size() < 2 || result.ec != std::errc() || result.ptr != pEnd) {
                    return Fail(at, "expected two hexadecimal digits behind \\x"), 0;
                }
                c = static_cast<char>(static_cast<unsigned char>(code));
                at += 2;
            }
        }
        pLexeme->text += c;
    }
    if (at == text.size()) return Fail(begin, "expected a closing quote"), 0;
    return at + 1;
}

bool Line::Fail(std::size_t at, std::string message) {
    m_diagnostics.Error({m_number, static_cast<int>(at) + 1}, std::move(message));
    return false;
}

const Lexeme& Line::Peek(std::size_t ahead) const {
    return m_lexemes[std::min(m_at + ahead, m_lexemes.size() - 1)];
}

Lexeme Line::Next() {
    const Lexeme lexeme = Peek();
    if (!AtEnd()) ++m_at;
    return lexeme;
}

bool Line::Skip(Lex kind) {
    return Is(kind) && (++m_at, true);
}

bool Line::SkipWord(std::string_view word) {
    return IsWord(word) && (++m_at, true);
}

bool Line::Name(const std::string& what, std::string* pName) {
    if (!Is(Lex::word) && !Is(Lex::text)) return Expected(what);
    *pName = Next().text;
    return true;
}

bool Line::Expected(const std::string& what) {
    m_diagnostics.Error(place(), "expected " + what + ", found " +
                                     (AtEnd() ? "the end of the line" : Shortened(Peek().source)));
    return false;
}

void Line::ExpectEnd() {
    if (!AtEnd()) Expected("the end of the line");
}

std::vector<std::string_view> SplitLines(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        lines.push_back(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return lines;
}

std::string Quoted(std::string_view name, bool bAlways) {
    bool bPlain = !name.empty() && IsWordStart(name[0]) && name != "_";
    std::string text;
    for (const char c : name) {
        const auto code = static_cast<unsigned char>(c);
        if (!IsInWord(c) || code >= 0x80) bPlain = false;
        if (code < 0x20 || code >= 0x7F) {
            static constexpr char kDigits[] = "0123456789abcdef";
            text.append("\\x").append({kDigits[code >> 4], kDigits[code & 15]});
        } else {
            if (c == '\'' || c == '\\') text += '\\';
            text += c;
        }
    }
    return bPlain && !bAlways ? text : "'" + text + "'";
}

}  // namespace mlds_testasm
