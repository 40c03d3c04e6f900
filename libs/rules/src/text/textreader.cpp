// Text as people type it, made into the letters that a language declares.
#include "text/textreader.h"

#include <algorithm>
#include <cstdio>
#include <unordered_map>

#include "text/expansions.h"
#include "text/folding.h"
#include "text/typedtext.h"

namespace mlds::rules {

namespace {

// Characters of several code points have numbers behind all code points.
constexpr int kFirstOwnCode = 0x110000;
// The codes of texts long read are given up rather than kept for ever.
constexpr std::size_t kMostCodes = 100000;

}  // namespace

struct TextReader::Parts {
    explicit Parts(const Model& m)
        : model(m),
          unicode(m.language, m.text.bCaseKept),
          folding(m, unicode),
          expansions(m, folding) {}

    int CodeOf(std::u32string_view character);
    void ReadCharacters(ReadText& read);
    void ReadSegments(Unknown unknown, ReadText& read);
    bool Expand(int at, ReadText& read);
    int ReadOne(int at, Unknown unknown, ReadText& read);
    void LeaveOut(int end, ReadText& read) const;

    const Model& model;
    UnicodeTable unicode;
    Folding folding;
    Expansions expansions;
    TypedText text;
    std::vector<int> badCharacters;  ///< where bytes were that are no UTF-8
    std::vector<int> letters;
    std::unordered_map<std::u32string, int> codes;
    std::vector<std::u32string> characters;  ///< by code, from kFirstOwnCode
};

TextReader::TextReader(const Model& model) : m_pParts(std::make_unique<Parts>(model)) {}
TextReader::~TextReader() = default;

int TextReader::Parts::CodeOf(std::u32string_view character) {
    if (character.size() == 1) return static_cast<int>(character[0]);
    const auto [entry, bNew] = codes.try_emplace(std::u32string(character));
    if (bNew) {
        entry->second = kFirstOwnCode + static_cast<int>(characters.size());
        characters.push_back(entry->first);
    }
    return entry->second;
}

void TextReader::Parts::ReadCharacters(ReadText& read) {
    const int size = text.size();
    read.characters.reserve(static_cast<std::size_t>(size));
    badCharacters.clear();
    std::size_t nReplaced = 0;
    for (int at = 0; at < size; ++at) {
        read.characters.push_back({CodeOf(text.Character(at))});
        if (text.Base(at) != 0xFFFD) continue;
        const int byte = text.badBytes[nReplaced++];
        if (byte < 0) continue;
        char what[48];
        std::snprintf(what, sizeof what, "the byte 0x%02X is no UTF-8",
                      static_cast<unsigned>(byte));
        read.faults.push_back({static_cast<std::size_t>(at) + 1, what});
        badCharacters.push_back(at);
    }
}

bool TextReader::Parts::Expand(int at, ReadText& read) {
    const Expansions::Match match = expansions.At(text, at, read.faults);
    if (match.expansion < 0) return false;
    read.segments.push_back({at, match.end, expansions.Letters(text, at, match, read.faults)});
    return true;
}

// What is no letter and leaves no place belongs to the segment before, or at the beginning of the
// text to the one that follows.
void TextReader::Parts::LeaveOut(int end, ReadText& read) const {
    if (!read.segments.empty()) read.segments.back().end = end;
}

// Reads what stands at a character, and says where it ends.
int TextReader::Parts::ReadOne(int at, Unknown unknown, ReadText& read) {
    letters.clear();
    // A bad byte is told already, and no letter even where U+FFFD is one.
    const bool bBad = std::binary_search(badCharacters.begin(), badCharacters.end(), at);
    Folding::Step step{Folding::Kind::unknown, at + 1, false};
    if (!bBad) step = folding.Next(text, at, letters);
    const bool bUnknown = step.kind == Folding::Kind::unknown;
    if (bUnknown && !bBad) {
        read.faults.push_back({static_cast<std::size_t>(at) + 1,
                               Described(text.Character(at)) + " is no letter of this language"});
    }
    if (step.kind == Folding::Kind::joined || (bUnknown && unknown != Unknown::keep)) {
        LeaveOut(step.end, read);
    } else {
        read.segments.push_back({at, step.end, letters});
    }
    return step.end;
}

void TextReader::Parts::ReadSegments(Unknown unknown, ReadText& read) {
    const int size = text.size();
    read.segments.reserve(static_cast<std::size_t>(size));
    if (!expansions.empty()) expansions.Begin(text);
    for (int at = 0; at < size;) {
        const bool bExpanded = !expansions.empty() && Expand(at, read);
        at = bExpanded ? read.segments.back().end : ReadOne(at, unknown, read);
    }
    if (size == 0) return;
    // Nothing but what is left out: the text has no letters, and its characters are one place.
    if (read.segments.empty()) read.segments.push_back({0, size, {}});
    read.segments.front().begin = 0;
}

ReadText TextReader::Read(std::string_view utf8, Unknown unknown) {
    Parts& parts = *m_pParts;
    ReadText read;
    if (utf8.size() > kLongestText) {
        read.faults.push_back({1, "the text is too long: " + std::to_string(utf8.size()) +
                                      " bytes, at most " + std::to_string(kLongestText)});
        return read;
    }
    if (parts.characters.size() > kMostCodes) {
        parts.codes.clear();
        parts.characters.clear();
    }
    TakeApart(utf8, parts.unicode, parts.text);
    parts.ReadCharacters(read);
    if (parts.model.text.tier == kNoTier) return read;
    parts.ReadSegments(unknown, read);
    // Bad bytes were told before everything else.
    std::stable_sort(read.faults.begin(), read.faults.end(),
                     [](const TextFault& a, const TextFault& b) { return a.column < b.column; });
    return read;
}

TokenKey TextReader::Letters(std::string_view utf8) {
    Parts& parts = *m_pParts;
    TokenKey key;
    if (utf8.size() > kLongestText) return key;
    TakeApart(utf8, parts.unicode, parts.text);
    std::vector<int> letters;
    for (int at = 0; at < parts.text.size();) {
        const Folding::Step step = parts.folding.Next(parts.text, at, letters);
        if (step.kind == Folding::Kind::place || step.kind == Folding::Kind::unknown) {
            letters.push_back(ReadText::kPlace);
        }
        at = step.end;
    }
    for (const int letter : letters) key += static_cast<char16_t>(letter);
    return key;
}

std::string TextReader::CharacterOf(int code) const {
    if (code < 0) return {};
    if (code < kFirstOwnCode) {
        const auto c = static_cast<char32_t>(code);
        return Utf8Of(std::u32string_view(&c, 1));
    }
    const auto index = static_cast<std::size_t>(code - kFirstOwnCode);
    return index < m_pParts->characters.size() ? Utf8Of(m_pParts->characters[index])
                                               : std::string();
}

}  // namespace mlds::rules
