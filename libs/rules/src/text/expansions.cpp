// Stretches of text that are read as something else: "Sr." as "señor", numbers in words.
#include "text/expansions.h"

#include <algorithm>

namespace mlds::rules {

namespace {

constexpr std::size_t kMostRemembered = 20000;
constexpr int kLongestRemembered = 40;

// Whether letters or digits stand on both sides of a place.
bool InsideWord(const TypedText& text, int at, UnicodeTable& unicode) {
    return at > 0 && at < text.size() && unicode.Of(text.Base(at - 1)).bWord &&
           unicode.Of(text.Base(at)).bWord;
}

}  // namespace

Expansions::Expansions(const Model& model, Folding& folding)
    : m_pModel(&model), m_folding(folding) {
    int index = 0;
    for (const Expansion& expansion : model.text.expansions) {
        if (expansion.bLiteral) {
            AddLiteral(expansion, index);
        } else if (auto pExpression = Expression::Compile(expansion.pattern)) {
            m_regexes.push_back({index, std::move(pExpression)});
        }
        m_readings.push_back(expansion.bSpellout ? Reading{} : Make(expansion.reading, nullptr));
        ++index;
    }
}

Expansions::~Expansions() = default;

void Expansions::AddLiteral(const Expansion& expansion, int index) {
    UnicodeTable& unicode = m_folding.unicode();
    const icu::Locale& locale = unicode.locale();
    TypedText text;
    const auto add = [&](const icu::UnicodeString& written) {
        std::string utf8;
        written.toUTF8String(utf8);
        TakeApart(utf8, unicode, text);
        m_literals.Add(text.typed, index);
    };
    const icu::UnicodeString written = icu::UnicodeString::fromUTF8(expansion.pattern);
    add(written);
    if (icu::UnicodeString(written).toLower(locale) != written) return;
    // In lower case it is the word, however a sentence or a heading writes it.
    add(icu::UnicodeString(written).toUpper(locale));
    const int32_t first = written.moveIndex32(0, 1);
    add(written.tempSubString(0, first).toUpper(locale) + written.tempSubString(first));
}

Expansions::Reading Expansions::Make(std::string_view words, const std::string* pTyped) {
    Reading reading;
    TypedText text;
    TakeApart(words, m_folding.unicode(), text);
    std::vector<int> unknown;
    reading.letters = m_folding.Letters(text, &unknown);
    for (const int at : unknown) {
        const std::string character = Utf8Of(text.Character(at));
        // The hyphens of ICU's own words ("twenty-two") part words, if they are no letters. What
        // was typed, other than a minus in front, is told.
        if (pTyped != nullptr && !m_folding.unicode().Of(text.Base(at)).bWord &&
            pTyped->find(character, 1) == std::string::npos) {
            continue;
        }
        reading.unknown.push_back(Described(text.Character(at)));
    }
    if (!reading.letters.empty()) {
        reading.letters.insert(reading.letters.begin(), Folding::kPlace);
        reading.letters.push_back(Folding::kPlace);
    }
    return reading;
}

void Expansions::Begin(const TypedText& text) {
    for (Regex& regex : m_regexes) regex.pExpression->Begin(text);
    m_nextRegex = 0;
}

void Expansions::Longest(Match& best, const Match& other) const {
    const bool bBetter =
        other.end != best.end ? other.end > best.end : other.expansion < best.expansion;
    if (best.expansion < 0 || bBetter) best = other;
}

Expansions::Match Expansions::Literal(const TypedText& text, int at) {
    const auto begin = static_cast<std::size_t>(text.begins[TypedText::Index(at)]);
    m_literals.Find(std::u32string_view(text.typed).substr(begin), m_hits);
    if (m_hits.empty() || InsideWord(text, at, m_folding.unicode())) return {};
    for (; !m_hits.empty(); m_hits.pop_back()) {
        const auto end = static_cast<int>(begin) + m_hits.back().length;
        const auto found = std::lower_bound(text.begins.begin() + at, text.begins.end(), end);
        if (found == text.begins.end() || *found != end) continue;
        const auto next = static_cast<int>(found - text.begins.begin());
        if (!InsideWord(text, next, m_folding.unicode())) return {m_hits.back().value, next};
    }
    return {};
}

Expansions::Match Expansions::At(const TypedText& text, int at, std::vector<TextFault>& faults) {
    Match best = m_literals.empty() ? Match{} : Literal(text, at);
    if (at < m_nextRegex) return best;
    m_nextRegex = Expression::kNone;
    for (Regex& regex : m_regexes) {
        if (!regex.pExpression->Seek(text, at)) {
            const auto index = static_cast<std::size_t>(regex.expansion);
            faults.push_back({static_cast<std::size_t>(at) + 1,
                              "the expression '" + m_pModel->text.expansions[index].pattern +
                                  "' takes too much time or memory here: the rest of the text is "
                                  "read without it"});
        }
        const int begin = regex.pExpression->begin();
        if (begin == at) Longest(best, {regex.expansion, regex.pExpression->end()});
        m_nextRegex = std::min(m_nextRegex, begin == at ? at + 1 : begin);
    }
    return best;
}

Expansions::Reading Expansions::SpellOut(const icu::UnicodeString& typed) {
    if (!m_bSpelloutTried) m_pSpellout = Spellout::For(m_pModel->language);
    m_bSpelloutTried = true;
    std::string utf8;
    typed.toUTF8String(utf8);
    if (!m_pSpellout) return Make(utf8, nullptr);
    std::string words;
    m_pSpellout->Read(typed).toUTF8String(words);
    return Make(words, &utf8);
}

const Expansions::Reading& Expansions::SpelledOut(const icu::UnicodeString& typed) {
    if (typed.length() > kLongestRemembered) {
        m_longReading = SpellOut(typed);
        return m_longReading;
    }
    std::string key;
    typed.toUTF8String(key);
    if (m_spelledOut.size() > kMostRemembered) m_spelledOut.clear();
    const auto [entry, bNew] = m_spelledOut.try_emplace(std::move(key));
    if (bNew) entry->second = SpellOut(typed);
    return entry->second;
}

const std::vector<int>& Expansions::Letters(const TypedText& text, int at, const Match& match,
                                            std::vector<TextFault>& faults) {
    const auto index = static_cast<std::size_t>(match.expansion);
    const bool bSpellout = m_pModel->text.expansions[index].bSpellout;
    const Reading& reading = bSpellout ? SpelledOut(text.Units(at, match.end)) : m_readings[index];
    for (const std::string& character : reading.unknown) {
        faults.push_back({static_cast<std::size_t>(at) + 1,
                          character + " in what this is read as is no letter of this language"});
    }
    return reading.letters;
}

}  // namespace mlds::rules
