// The words and signs of a line.
#include "syntax/lexer.h"

#include <unicode/uchar.h>

#include "codepoints.h"
#include "text/textreader.h"

namespace mlds::rules::syntax {

namespace {

constexpr std::string_view kSigns = "()[]{}<>|?*+&!#^@=$:;,/\\\"._~";

bool IsSign(char c) {
    return kSigns.find(c) != std::string_view::npos;
}

// "-" is a letter of words, but for the pair "->".
bool EndsWord(std::string_view text, std::size_t at) {
    if (at >= text.size() || IsSign(text[at]) || text.substr(at, 2) == "->") return true;
    return IsBlank(CodePointAt(text, at).value);
}

bool IsControl(char32_t c) {
    return u_charType(static_cast<UChar32>(c)) == U_CONTROL_CHAR;
}

std::string CodeOf(char32_t c) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string code = "U+";
    for (int shift = 12; shift >= 0; shift -= 4) code += kDigits[c >> shift & 0xF];
    return code;
}

}  // namespace

std::string Described(const Lexeme& lexeme) {
    switch (lexeme.kind) {
        case Lex::word: return "'" + Shortened(lexeme.word.text) + "'";
        case Lex::text: return "\"" + Shortened(lexeme.word.text) + "\"";
        case Lex::sign: return std::string("'") + lexeme.sign + "'";
        case Lex::arrow: return "'->'";
        case Lex::assign: return "':='";
        // A line of rules has several ends.
        case Lex::end: return lexeme.sign == 0 ? "the end of the line" : "','";
    }
    return {};
}

void Lexer::SkipBlanks() {
    const std::string_view text = m_line.text();
    while (m_at < text.size()) {
        const CodePoint c = CodePointAt(text, m_at);
        if (c.value == ';') {
            // A comment ends with its own line, which another may continue.
            m_at = std::min(text.find('\n', m_at), text.size());
        } else if (IsBlank(c.value)) {
            m_at = c.next;
        } else {
            return;
        }
    }
}

Lexeme Lexer::Made(Lex kind, std::size_t length, char sign) {
    Lexeme lexeme;
    lexeme.kind = kind;
    lexeme.sign = sign;
    lexeme.begin = m_at;
    lexeme.end = m_at + length;
    lexeme.word.span = m_line.SpanOf(lexeme.begin, lexeme.end);
    m_at = lexeme.end;
    return lexeme;
}

Lexeme Lexer::Next() {
    const std::string_view text = m_line.text();
    const std::size_t before = m_at;
    SkipBlanks();
    const bool bGlued = before == m_at && m_at > 0;
    Lexeme lexeme;
    if (m_at >= text.size()) {
        // Behind the last word, not behind its comment.
        m_at = before;
        lexeme = Made(Lex::end, 0);
        m_at = text.size();
    } else if (text[m_at] == '"') {
        lexeme = Text();
    } else if (text.substr(m_at, 2) == "->") {
        lexeme = Made(Lex::arrow, 2);
    } else if (text.substr(m_at, 2) == ":=" && EndsWord(text, m_at + 2)) {
        // "x:=y" is a capture of what equals y.
        lexeme = Made(Lex::assign, 2);
    } else if (IsSign(text[m_at])) {
        lexeme = Made(Lex::sign, 1, text[m_at]);
    } else {
        lexeme = PlainWord();
    }
    lexeme.bGlued = bGlued;
    return lexeme;
}

void Lexer::ThrowControl(std::size_t at) const {
    const CodePoint c = CodePointAt(m_line.text(), at);
    throw Fault{m_line.SpanOf(at, c.next),
                "a control character (" + CodeOf(c.value) + ") stands here"};
}

Lexeme Lexer::PlainWord() {
    const std::string_view text = m_line.text();
    std::size_t end = m_at;
    while (!EndsWord(text, end)) {
        const CodePoint c = CodePointAt(text, end);
        if (IsControl(c.value)) {
            ThrowControl(end);
        }
        end = c.next;
    }
    // Everything is compared in composed form, whatever the editor has typed.
    Lexeme word = Made(Lex::word, end - m_at);
    word.word.text = Composed(text.substr(word.begin, end - word.begin));
    return word;
}

Lexeme Lexer::Text() {
    const std::string_view text = m_line.text();
    std::string content;
    std::size_t end = m_at + 1;
    for (; end < text.size() && text[end] != '"' && text[end] != '\n'; ++end) {
        if (text[end] == '\\') {
            // Others are kept free: "\n" must not be an n today and a line feed tomorrow.
            const bool bKnown =
                end + 1 < text.size() && (text[end + 1] == '"' || text[end + 1] == '\\');
            if (!bKnown) {
                throw Fault{m_line.SpanOf(end, end + 1),
                            R"(in quotes, '\' stands only before '"' and '\'; write '\\')"};
            }
            ++end;
        }
        if (IsControl(CodePointAt(text, end).value) && text[end] != '\t') {
            ThrowControl(end);
        }
        content += text[end];
    }
    if (end >= text.size() || text[end] != '"') {
        throw Fault{m_line.SpanOf(m_at, m_at + 1),
                    "this quote is not closed; a quote as a token is written \"\\\"\""};
    }
    Lexeme lexeme = Made(Lex::text, end + 1 - m_at);
    lexeme.word.text = Composed(content);
    lexeme.word.bQuoted = true;
    return lexeme;
}

std::vector<Lexeme> Lexemes(const Line& line, std::size_t at) {
    std::vector<Lexeme> lexemes;
    Lexer lexer(line, at);
    do {
        lexemes.push_back(lexer.Next());
    } while (lexemes.back().kind != Lex::end);
    return lexemes;
}

RawText RawRest(const Line& line, std::size_t at) {
    const std::string_view text = line.text();
    const auto IsBlankAt = [&](std::size_t i) {
        return text[i] == ' ' || text[i] == '\t' || text[i] == '\n';
    };
    while (at < text.size() && IsBlankAt(at)) ++at;
    RawText raw{{}, at, at};
    bool bQuoted = false;
    for (std::size_t i = at; i < text.size(); ++i) {
        if (text[i] == ';' && !bQuoted) {
            i = std::min(text.find('\n', i), text.size());
            if (i == text.size()) break;
        }
        // A quote that is not closed ends with its line, and takes no comment of the next with it.
        if (text[i] == '\n') bQuoted = false;
        if (text[i] == '"') bQuoted = !bQuoted;
        raw.text += text[i] == '\n' ? ' ' : text[i];
        if (text[i] == '\\' && i + 1 < text.size() && text[i + 1] != '\n') raw.text += text[++i];
        if (!IsBlankAt(i)) raw.end = i + 1;
    }
    while (!raw.text.empty() && (raw.text.back() == ' ' || raw.text.back() == '\t')) {
        raw.text.pop_back();
    }
    return raw;
}

}  // namespace mlds::rules::syntax
