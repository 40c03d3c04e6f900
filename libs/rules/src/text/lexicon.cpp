// Words that rules cannot know, with their tokens.
#include "text/lexicon.h"

#include <algorithm>

#include "codepoints.h"
#include "text/shownreader.h"
#include "text/textreader.h"

namespace mlds::rules {

namespace {

constexpr char16_t kNoLetter = static_cast<char16_t>(ReadText::kPlace);

bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r';
}

std::string_view Trimmed(std::string_view text) {
    while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
    return text;
}

// A word for a message, whatever its bytes are.
std::string Quoted(std::string_view word) {
    return "'" + Composed(Shortened(word)) + "'";
}

// A line up to its comment. A ";" inside a word or a token begins none.
std::string_view WithoutComment(std::string_view line) {
    for (std::size_t at = 0; at < line.size(); ++at) {
        if (line[at] == ';' && (at == 0 || IsBlank(line[at - 1]))) return line.substr(0, at);
    }
    return line;
}

// The entries of one file, read line by line.
class LexiconReader {
public:
    LexiconReader(const Model& model, const LexiconFile& file, const Sources& sources, int source,
                  Diagnostics& diagnostics)
        : m_text(model),
          m_shown(model, file.to),
          m_pTierOfWords(&model.tiers.at(static_cast<std::size_t>(model.text.tier))),
          m_sources(sources),
          m_source(source),
          m_diagnostics(diagnostics) {}

    /// False if the line has no entry. The tokens are appended.
    bool ReadLine(int number, TokenKey& word, std::vector<Piece>& pieces);
    Span At(std::string_view part) const;
    void Error(std::string_view part, std::string message) {
        m_diagnostics.Error(m_sources, At(part), std::move(message));
    }

private:
    bool ReadWord(std::string_view written, TokenKey& word);
    bool ReadTokens(std::string_view written, std::vector<Piece>& pieces);

    TextReader m_text;
    ShownReader m_shown;
    const Tier* m_pTierOfWords;
    const Sources& m_sources;
    int m_source;
    Diagnostics& m_diagnostics;
    int m_line = 0;
    std::string_view m_lineText;
    ShownText m_tokens;
};

Span LexiconReader::At(std::string_view part) const {
    const auto offset = static_cast<std::size_t>(part.data() - m_lineText.data());
    return {m_source, m_line, CountCodePoints(m_lineText.substr(0, offset)) + 1,
            std::max(1, CountCodePoints(part))};
}

bool LexiconReader::ReadLine(int number, TokenKey& word, std::vector<Piece>& pieces) {
    m_line = number;
    m_lineText = m_sources.At(m_source).Line(number);
    const std::string_view line = WithoutComment(m_lineText);
    const std::string_view trimmed = Trimmed(line);
    if (trimmed.empty()) return false;
    const std::size_t tab = line.find('\t');
    if (tab == std::string_view::npos) {
        Error(trimmed, "no TAB here: a line is a word, a TAB and its tokens");
        return false;
    }
    const std::string_view tokens = Trimmed(line.substr(tab + 1));
    if (tokens.empty()) {
        Error(trimmed, "this word has no tokens: a line is a word, a TAB and its tokens");
        return false;
    }
    return ReadWord(Trimmed(line.substr(0, tab)), word) && ReadTokens(tokens, pieces);
}

bool LexiconReader::ReadWord(std::string_view written, TokenKey& word) {
    if (written.empty()) {
        Error(written, "no word before the TAB");
        return false;
    }
    word = m_text.Letters(written);
    if (word.empty() || word.find(kNoLetter) != TokenKey::npos) {
        Error(written, Quoted(written) + " is no word in letters of tier " + m_pTierOfWords->name +
                           ": no text can have it");
        return false;
    }
    return true;
}

bool LexiconReader::ReadTokens(std::string_view written, std::vector<Piece>& pieces) {
    m_tokens.pieces.clear();
    const Span begin = At(written);
    if (!m_shown.Read(written, m_tokens)) {
        m_diagnostics.Error(m_sources,
                            {m_source, m_line, begin.column + m_tokens.column - 1, m_tokens.length},
                            m_tokens.fault);
        return false;
    }
    for (Piece& piece : m_tokens.pieces) {
        piece.span.file = m_source;
        piece.span.line = m_line;
        piece.span.column += begin.column - 1;
        pieces.push_back(std::move(piece));
    }
    return true;
}

}  // namespace

Lexicon::Lexicon(const Model& model, const LexiconFile& file, const Sources& sources, int source,
                 Diagnostics& diagnostics) {
    if (model.text.tier == kNoTier) {
        diagnostics.Error(sources, file.span,
                          "a lexicon needs words of letters, and no tier is 'from text'");
        return;
    }
    struct Entry {
        TokenKey word;
        std::size_t end = 0;  ///< behind its last piece
    };
    LexiconReader reader(model, file, sources, source, diagnostics);
    std::vector<Entry> entries;
    const int nLines = sources.At(source).lines();
    entries.reserve(static_cast<std::size_t>(nLines));
    m_entries.reserve(static_cast<std::size_t>(nLines));
    for (int number = 1; number <= nLines; ++number) {
        Entry entry;
        if (!reader.ReadLine(number, entry.word, m_pieces)) continue;
        if (!m_entries.try_emplace(entry.word).second) {
            const std::string_view line = sources.At(source).Line(number);
            const std::string_view word = Trimmed(line.substr(0, line.find('\t')));
            m_pieces.resize(entries.empty() ? 0 : entries.back().end);
            diagnostics.Warning(sources, reader.At(word),
                                Quoted(word) + " is here already: the first one holds");
            continue;
        }
        entry.end = m_pieces.size();
        entries.push_back(std::move(entry));
    }
    // Only now do pieces stay where they are.
    std::size_t begin = 0;
    for (const Entry& entry : entries) {
        m_entries[entry.word] = std::span(m_pieces).subspan(begin, entry.end - begin);
        begin = entry.end;
    }
}

const std::span<const Piece>* Lexicon::Find(const TokenKey& word) const {
    const auto entry = m_entries.find(word);
    return entry == m_entries.end() ? nullptr : &entry->second;
}

}  // namespace mlds::rules
