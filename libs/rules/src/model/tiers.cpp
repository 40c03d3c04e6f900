// Tiers, their fields, and how the first of them is filled from text.
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <set>

#include "model/patterns.h"
#include "model/resolve.h"

namespace mlds::rules {

namespace {

// What a container holds, and what its texts can be as long as.
constexpr std::size_t kMostTiers = 50;
constexpr std::size_t kMostFields = 50;
constexpr std::size_t kMostValues = 30;
constexpr std::size_t kLongestTier = 50;
constexpr std::size_t kLongestValue = 29;
constexpr std::size_t kLongestToken = 19;

std::string Letters(const syntax::Word& word) {
    return word.text;
}

class TierResolver {
public:
    TierResolver(Scope& scope, TierId id, const syntax::Tier& written)
        : m_scope(scope), m_id(id), m_tier(scope.tier(id)), m_written(written) {}

    // The tokens first: features and words of this and other tiers are made of them.
    void ResolveTokens() {
        m_tier.fields.push_back({"name", Field::Kind::name, {}, {}, false, false, m_written.span});
        if (m_tier.kind == Tier::Kind::time && !m_written.tokens.empty()) {
            m_scope.Error(m_written.tokens.front().span,
                          "the tokens of a time tier are numbers and need no list");
        }
        for (const syntax::Word& word : m_written.tokens) AddToken(word);
        for (const syntax::TierPart& part : m_written.parts) {
            if (const auto* pSpan = std::get_if<syntax::SpanPattern>(&part)) AddName(pSpan->name);
            if (const auto* pWords = std::get_if<syntax::SpanWords>(&part)) AddName(pWords->name);
        }
        if (m_tier.kind == Tier::Kind::fromText && m_tier.tokens.empty()) {
            m_scope.Error(m_written.span, "tier " + m_tier.name + " needs its letters: tier " +
                                              m_tier.name + " from text : a b c");
        }
        // A tier of which only the extent matters has one kind of token.
        if (m_tier.kind == Tier::Kind::plain && m_tier.tokens.empty()) {
            m_tier.tokens.push_back(m_tier.name);
        }
    }

    void ResolveParts() {
        for (const syntax::TierPart& part : m_written.parts) {
            std::visit([this](const auto& p) { Add(p); }, part);
        }
        if (m_tier.kind == Tier::Kind::fromText) AddUnicodeFeatures();
        if (m_tier.fields.size() > kMostFields) {
            m_scope.Error(
                m_written.span,
                "a tier holds at most " + std::to_string(kMostFields - 1) + " features and fields");
        }
    }

private:
    void AddToken(const syntax::Word& word) {
        if (word.text.empty() || word.text.size() > kLongestToken) {
            m_scope.Error(word.span, word.text.empty()
                                         ? "a token needs a name"
                                         : "a token's name has at most 19 bytes: " + word.text);
            return;
        }
        if (!m_names.insert(word.text).second) {
            m_scope.Error(word.span,
                          "tier " + m_tier.name + " has " + Quoted(word.text) + " twice");
            return;
        }
        m_tier.tokens.push_back(word.text);
    }

    // The names of runs may be said more than once: several patterns, or words beside a pattern.
    void AddName(const syntax::Word& word) {
        if (m_tier.FindToken(word.text) < 0) AddToken(word);
    }

    void Add(const syntax::Feature& written) {
        Field field;
        field.name = written.name.text;
        field.kind = Field::Kind::feature;
        field.bYesNo = written.bYesNo;
        field.span = written.name.span;
        field.valueOfToken.assign(m_tier.tokens.size(), written.bYesNo ? 1 : -1);
        if (m_tier.kind == Tier::Kind::time) {
            m_scope.Error(field.span, "the numbers of a time tier have no features");
        }
        if (written.bYesNo) {
            field.values = {"yes", "no"};
        } else {
            for (const syntax::Feature::Value& value : written.values) {
                AddValue(field, value.name);
            }
        }
        for (std::size_t v = 0; v < written.values.size() && v < field.values.size(); ++v) {
            for (const syntax::Word& word : written.values[v].tokens) {
                Assign(field, static_cast<int>(v), word);
            }
        }
        // Tokens without a value need one more in the container, for none.
        const auto none = std::find(field.valueOfToken.begin(), field.valueOfToken.end(), -1);
        if (field.values.size() == kMostValues && none != field.valueOfToken.end()) {
            m_scope.Error(field.span, "a feature that leaves tokens out has at most 29 values");
        }
        AddField(std::move(field));
    }

    void AddValue(Field& field, const syntax::Word& name) {
        if (std::find(field.values.begin(), field.values.end(), name.text) != field.values.end()) {
            m_scope.Error(name.span,
                          Quoted(field.name) + " has the value " + Quoted(name.text) + " twice");
        }
        if (m_tier.FindToken(name.text) >= 0) {
            m_scope.Error(name.span, Quoted(name.text) +
                                         " is a token of this tier; a value needs a "
                                         "name of its own");
        }
        if (name.text.size() > kLongestValue) {
            m_scope.Error(name.span, "a value's name has at most 29 bytes");
        }
        field.values.push_back(name.text);
        if (field.values.size() == kMostValues + 1) {
            m_scope.Error(name.span, "a feature has at most 30 values");
        }
    }

    void Assign(Field& field, int value, const syntax::Word& word) {
        for (const int token : m_scope.Cut(m_id, word)) {
            int& current = field.valueOfToken[static_cast<std::size_t>(token)];
            if (!field.bYesNo && current >= 0 && current != value) {
                m_scope.Error(word.span,
                              Quoted(word.text) + " has the value " +
                                  Quoted(field.values[static_cast<std::size_t>(current)]) +
                                  " already; a token has one value of a feature");
            }
            current = value;
        }
    }

    void Add(const syntax::NumberField& written) {
        Field field;
        field.name = written.name.text;
        field.kind = Field::Kind::number;
        field.span = written.name.span;
        AddField(std::move(field));
    }

    void AddField(Field field) {
        const auto isNamed = [&field](const Field& other) {
            return other.name == field.name ||
                   (!other.bYesNo && std::find(other.values.begin(), other.values.end(),
                                               field.name) != other.values.end());
        };
        if (std::any_of(m_tier.fields.begin(), m_tier.fields.end(), isNamed) ||
            m_tier.FindToken(field.name) >= 0 || field.name == "name") {
            m_scope.Error(field.span, "tier " + m_tier.name + " has a feature, value or token " +
                                          Quoted(field.name) + " already");
            return;
        }
        if (field.name.size() > kLongestValue) {
            m_scope.Error(field.span, "a feature's name has at most 29 bytes");
            return;
        }
        m_tier.fields.push_back(std::move(field));
    }

    // What Unicode calls a letter or a digit, unless the author says what is one.
    void AddUnicodeFeatures() {
        const auto add = [this](const char* name, UBool (*is)(UChar32)) {
            const bool bTaken = m_tier.FindField(name) >= 0 || m_tier.FindToken(name) >= 0;
            if (bTaken) return;
            Field field;
            field.name = name;
            field.kind = Field::Kind::feature;
            field.values = {"yes", "no"};
            field.bYesNo = true;
            field.span = m_written.span;
            for (const std::string& token : m_tier.tokens) {
                const bool bIs = is(icu::UnicodeString::fromUTF8(token).char32At(0)) != 0;
                field.valueOfToken.push_back(bIs ? 0 : 1);
            }
            m_tier.fields.push_back(std::move(field));
        };
        add("letter", [](UChar32 c) { return u_isalpha(c); });
        add("digit", [](UChar32 c) { return u_isdigit(c); });
    }

    // ---- what only the tier from text has ----

    bool IsFromText(const Span& span, const char* what) {
        if (m_tier.kind == Tier::Kind::fromText) return true;
        m_scope.Error(span, std::string(what) + " belongs to the tier that is 'from text'");
        return false;
    }

    TextReading& Text() { return m_scope.model().text; }

    void Add(const syntax::StandsFor& written) {
        if (written.from.empty() || !IsFromText(written.from.front().span, "'stands for'")) return;
        std::string letters;
        for (const syntax::Word& word : written.to) {
            for (const int token : m_scope.Cut(m_id, word)) {
                if (!letters.empty()) letters += ' ';
                letters += m_tier.tokens[static_cast<std::size_t>(token)];
            }
        }
        for (const syntax::Word& word : written.from) {
            Text().standsFor.push_back({word.text, letters, word.span});
        }
    }

    void Add(const syntax::Ignore& written) {
        for (const syntax::Word& word : written.characters) {
            if (!IsFromText(word.span, "'ignore'")) return;
            Text().ignored.push_back(Letters(word));
        }
        if (written.bOther) Text().bIgnoreOther = true;
    }

    void Add(const syntax::JoinLetters& written) {
        for (const syntax::Word& word : written.characters) {
            if (!IsFromText(word.span, "'join'")) return;
            Text().joined.push_back(Letters(word));
        }
    }

    void Add(const syntax::Expansion& written) {
        if (!IsFromText(written.pattern.span, "'expand'")) return;
        Text().expansions.push_back({written.pattern.text, written.pattern.bQuoted,
                                     written.reading.text, written.bSpellout,
                                     written.pattern.span});
    }

    void Add(const syntax::CaseKept& written) {
        if (IsFromText(written.span, "'case kept'")) Text().bCaseKept = true;
    }

    // Resolved later, when all tiers have their tokens and patterns their names.
    void Add(const syntax::SpanPattern& written) { ExpectSpans(written.name.span); }
    void Add(const syntax::SpanWords& written) { ExpectSpans(written.name.span); }
    void ExpectSpans(const Span& span) {
        if (m_tier.kind == Tier::Kind::spans) return;
        m_scope.Error(span, "only a tier that spans another has such a line: tier " + m_tier.name +
                                " spans ...");
    }

    Scope& m_scope;
    TierId m_id;
    Tier& m_tier;
    const syntax::Tier& m_written;
    std::set<std::string> m_names;
};

void AddTextTier(Model& model) {
    Tier text;
    text.name = "text";
    text.kind = Tier::Kind::text;
    text.fields.push_back({"name", Field::Kind::name, {}, {}, false, false, {}});
    model.tiers.push_back(std::move(text));
}

Tier Declared(Scope& scope, const syntax::Tier& written) {
    Tier tier;
    tier.name = written.name.text;
    tier.span = written.name.span;
    if (written.bFromText) tier.kind = Tier::Kind::fromText;
    if (written.bTime) tier.kind = Tier::Kind::time;
    if (written.spans) {
        tier.kind = Tier::Kind::spans;
        tier.spanned = scope.TierCalled(written.spans);
    }
    return tier;
}

// True if the tier may be added under that name.
bool CheckDeclaration(Scope& scope, const syntax::Tier& written) {
    const TierId other = scope.model().FindTier(written.name.text);
    if (other == kTextTier) {
        scope.Error(written.name.span, "tier text is always there; give this one another name");
    } else if (other != kNoTier) {
        scope.Error(written.name.span,
                    "there is a tier " + Quoted(written.name.text) + " already, in " +
                        LineOf(scope.sources(), scope.tier(other).span, written.name.span));
    } else if (written.name.text.size() > kLongestTier) {
        scope.Error(written.name.span, "a tier's name has at most 50 bytes");
    } else if (scope.model().tiers.size() == kMostTiers) {
        scope.Error(written.name.span, "there are 50 tiers already, text among them");
    } else if (written.bFromText && scope.model().text.tier != kNoTier) {
        scope.Error(written.name.span,
                    "tier " + scope.tier(scope.model().text.tier).name + " is from text already");
    } else {
        return true;
    }
    return false;
}

TokenKey KeyOf(Scope& scope, TierId tier, const syntax::Word& word) {
    TokenKey key;
    for (const int token : scope.Cut(tier, word)) key.push_back(static_cast<char16_t>(token));
    return key;
}

void ResolveSpansOf(Scope& scope, TierId id, const syntax::Tier& written) {
    Tier& tier = scope.tier(id);
    for (const syntax::TierPart& part : written.parts) {
        if (const auto* pPattern = std::get_if<syntax::SpanPattern>(&part)) {
            Variables variables(scope);
            SpanPattern span;
            span.name = pPattern->name.text;
            span.token = tier.FindToken(span.name);
            span.span = pPattern->name.span;
            span.pattern =
                ResolvePattern(scope, variables, {tier.spanned, kNoTier}, pPattern->pattern);
            if (CanBeEmpty(span.pattern)) {
                scope.Error(span.span, "this run may be of nothing; write + where it says *");
            }
            tier.spanPatterns.push_back(std::move(span));
        } else if (const auto* pWords = std::get_if<syntax::SpanWords>(&part)) {
            SpanWords words{pWords->name.text, tier.FindToken(pWords->name.text), {}};
            for (const syntax::Word& word : pWords->words) {
                words.words.push_back(KeyOf(scope, tier.spanned, word));
            }
            tier.spanWords.push_back(std::move(words));
        }
    }
    if (tier.spanPatterns.empty()) {
        scope.Error(tier.span, "tier " + tier.name +
                                   " spans nothing yet; say which runs get a "
                                   "token: " +
                                   tier.name + " = [letter]+");
    }
}

}  // namespace

void ResolveTiers(Scope& scope, const std::vector<syntax::Statement>& statements) {
    AddTextTier(scope.model());
    std::vector<const syntax::Tier*> written;
    for (const syntax::Statement& statement : statements) {
        const auto* pTier = std::get_if<syntax::Tier>(&statement);
        if (pTier == nullptr || !CheckDeclaration(scope, *pTier)) continue;
        Tier tier = Declared(scope, *pTier);
        if (tier.kind == Tier::Kind::spans && tier.spanned == kNoTier) continue;
        if (tier.kind == Tier::Kind::fromText) {
            scope.model().text.tier = static_cast<TierId>(scope.model().tiers.size());
        }
        scope.model().tiers.push_back(std::move(tier));
        written.push_back(pTier);
    }
    // The tiers stay where they are from here on.
    std::vector<TierResolver> resolvers;
    for (std::size_t i = 0; i < written.size(); ++i) {
        resolvers.emplace_back(scope, static_cast<TierId>(i) + 1, *written[i]);
    }
    for (TierResolver& resolver : resolvers) resolver.ResolveTokens();
    for (TierResolver& resolver : resolvers) resolver.ResolveParts();
}

void ResolveSpans(Scope& scope, const std::vector<syntax::Statement>& statements) {
    for (const syntax::Statement& statement : statements) {
        const auto* pTier = std::get_if<syntax::Tier>(&statement);
        if (pTier == nullptr || !pTier->spans) continue;
        const TierId id = scope.model().FindTier(pTier->name.text);
        if (id == kNoTier || scope.tier(id).kind != Tier::Kind::spans) continue;
        if (scope.tier(id).span != pTier->name.span) continue;  // a second one of that name
        ResolveSpansOf(scope, id, *pTier);
    }
}

}  // namespace mlds::rules
