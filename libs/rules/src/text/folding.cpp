// From characters to the letters of a language, without expansions.
#include "text/folding.h"

#include <sstream>

namespace mlds::rules {

namespace {

void Append(std::vector<int>& to, const std::vector<int>& from) {
    to.insert(to.end(), from.begin(), from.end());
}

// The character that begins at an offset; -1 if the offset is inside one. `begins` is that of the
// text or of its lower case.
int CharacterAt(const std::vector<int>& begins, int from, std::size_t offset) {
    auto at = static_cast<std::size_t>(from);
    while (static_cast<std::size_t>(begins[at]) < offset) ++at;
    return static_cast<std::size_t>(begins[at]) == offset ? static_cast<int>(at) : -1;
}

}  // namespace

Folding::Folding(const Model& model, UnicodeTable& unicode)
    : m_unicode(unicode), m_bIgnoreOther(model.text.bIgnoreOther) {
    if (model.text.tier != kNoTier) {
        m_pTier = &model.tiers.at(static_cast<std::size_t>(model.text.tier));
    }
    AddEntries(model);
    // What "read" gives is made of entries, and of no other "read": it never goes in circles.
    AddReads(model);
}

void Folding::AddEntry(std::string_view utf8, Kind kind, std::vector<int> letters) {
    TypedText text;
    TakeApart(utf8, m_unicode, text);
    m_letters.Add(text.typed, static_cast<int>(m_entries.size()));
    m_entries.push_back({kind, std::move(letters)});
}

void Folding::AddEntries(const Model& model) {
    if (m_pTier != nullptr) {
        for (std::size_t i = 0; i < m_pTier->tokens.size(); ++i) {
            TypedText text;
            TakeApart(m_pTier->tokens[i], m_unicode, text);
            m_tokens.Add(text.typed, static_cast<int>(i));
        }
        for (const Fold& fold : model.text.standsFor) {
            AddEntry(fold.from, Kind::letters, Tokens(fold.to));
        }
        for (std::size_t i = 0; i < m_pTier->tokens.size(); ++i) {
            AddEntry(m_pTier->tokens[i], Kind::letters, {static_cast<int>(i)});
        }
    }
    for (const std::string& character : model.text.ignored) AddEntry(character, Kind::place, {});
    for (const std::string& character : model.text.joined) AddEntry(character, Kind::joined, {});
}

void Folding::AddReads(const Model& model) {
    for (const Fold& fold : model.text.reads) {
        std::vector<int> letters = Letters(fold.to);
        TypedText from;
        TakeApart(fold.from, m_unicode, from);
        const auto index = static_cast<int>(m_readLetters.size());
        m_readLetters.push_back(std::move(letters));
        m_reads.Add(from.typed, index);
        m_lowReads.Add(from.typed, index);
    }
}

Folding::Step Folding::Next(const TypedText& text, int at, std::vector<int>& letters) {
    Step step;
    if (Read(text, at, letters, step) || Take(text, at, letters, step)) return step;
    step.end = at + 1;
    const std::u32string_view character = text.Character(at);
    // A blank with an accent on it is something that a person typed, and not nothing.
    const bool bBlank = character.size() == 1 && m_unicode.Of(character[0]).bBlank;
    step.bOther = !bBlank && m_bIgnoreOther;
    step.kind = bBlank || m_bIgnoreOther ? Kind::place : Kind::unknown;
    return step;
}

bool Folding::Read(const TypedText& text, int at, std::vector<int>& letters, Step& step) {
    if (m_reads.empty()) return false;
    const auto find = [&](const PrefixTree& tree, const std::u32string& codes,
                          const std::vector<int>& begins) {
        const auto begin = static_cast<std::size_t>(begins[TypedText::Index(at)]);
        tree.Find(std::u32string_view(codes).substr(begin), m_hits);
        for (; !m_hits.empty(); m_hits.pop_back()) {
            const PrefixTree::Hit& hit = m_hits.back();
            const int end = CharacterAt(begins, at, begin + static_cast<std::size_t>(hit.length));
            if (end < 0) continue;
            Append(letters, m_readLetters[static_cast<std::size_t>(hit.value)]);
            step.end = end;
            step.kind = m_readLetters[static_cast<std::size_t>(hit.value)].empty() ? Kind::place
                                                                                   : Kind::letters;
            return true;
        }
        return false;
    };
    return find(m_reads, text.typed, text.begins) ||
           find(m_lowReads, text.lowered, text.loweredBegins);
}

bool Folding::Take(const TypedText& text, int at, std::vector<int>& letters, Step& step) {
    const auto begin = static_cast<std::size_t>(text.loweredBegins[TypedText::Index(at)]);
    m_letters.Find(std::u32string_view(text.lowered).substr(begin), m_hits);
    for (; !m_hits.empty(); m_hits.pop_back()) {
        const PrefixTree::Hit hit = m_hits.back();
        const Entry& entry = m_entries[static_cast<std::size_t>(hit.value)];
        const std::size_t end = begin + static_cast<std::size_t>(hit.length);
        int next = CharacterAt(text.loweredBegins, at, end);
        const std::size_t before = letters.size();
        Append(letters, entry.letters);
        if (next < 0 && entry.kind == Kind::letters) {
            // The letter ends inside a character: its marks must be letters too (vowel signs), or
            // an accent would be lost in silence.
            int over = at;
            while (static_cast<std::size_t>(text.loweredBegins[TypedText::Index(over)]) < end) {
                ++over;
            }
            const auto rest = static_cast<std::size_t>(text.loweredBegins[TypedText::Index(over)]);
            if (TakeRest(text, end, rest, letters)) next = over;
        }
        if (next >= 0) {
            step = {entry.kind, next, false};
            return true;
        }
        letters.resize(before);
    }
    return false;
}

bool Folding::TakeRest(const TypedText& text, std::size_t from, std::size_t to,
                       std::vector<int>& letters) {
    while (from < to) {
        m_letters.Find(std::u32string_view(text.lowered).substr(from, to - from), m_restHits);
        if (m_restHits.empty()) return false;
        const PrefixTree::Hit& hit = m_restHits.back();
        const Entry& entry = m_entries[static_cast<std::size_t>(hit.value)];
        if (entry.kind == Kind::place) return false;
        Append(letters, entry.letters);
        from += static_cast<std::size_t>(hit.length);
    }
    return true;
}

std::vector<int> Folding::Letters(const TypedText& text, std::vector<int>* pUnknown) {
    std::vector<int> letters;
    for (int at = 0; at < text.size();) {
        const Step step = Next(text, at, letters);
        const bool bPlace = step.kind == Kind::place || step.kind == Kind::unknown;
        if (step.kind == Kind::unknown && pUnknown != nullptr) pUnknown->push_back(at);
        if (bPlace && !letters.empty() && letters.back() != kPlace) letters.push_back(kPlace);
        at = step.end;
    }
    if (!letters.empty() && letters.back() == kPlace) letters.pop_back();
    return letters;
}

std::vector<int> Folding::Letters(std::string_view utf8, std::vector<int>* pUnknown) {
    TypedText text;
    TakeApart(utf8, m_unicode, text);
    return Letters(text, pUnknown);
}

std::vector<int> Folding::Tokens(std::string_view utf8, std::vector<std::string>* pUnknown) {
    std::vector<int> tokens;
    std::istringstream words{std::string(utf8)};
    for (std::string word; words >> word;) {
        TypedText text;
        TakeApart(word, m_unicode, text);
        for (std::size_t at = 0; at < text.typed.size();) {
            m_tokens.Find(std::u32string_view(text.typed).substr(at), m_restHits);
            if (m_restHits.empty()) {
                if (pUnknown != nullptr) pUnknown->push_back(Utf8Of(text.typed.substr(at, 1)));
                ++at;
                continue;
            }
            tokens.push_back(m_restHits.back().value);
            at += static_cast<std::size_t>(m_restHits.back().length);
        }
    }
    return tokens;
}

}  // namespace mlds::rules
