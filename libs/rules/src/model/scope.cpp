// Looking up the names of a rule file.
#include "model/scope.h"

#include <algorithm>
#include <charconv>

namespace mlds::rules {

namespace {

// The longest token that stands at a place of a text; -1 if none does.
int LongestToken(const Tier& tier, std::string_view text) {
    int longest = -1;
    std::size_t length = 0;
    for (std::size_t i = 0; i < tier.tokens.size(); ++i) {
        const std::string& token = tier.tokens[i];
        if (token.size() > length && text.starts_with(token)) {
            longest = static_cast<int>(i);
            length = token.size();
        }
    }
    return longest;
}

}  // namespace

std::string Quoted(const std::string& text) {
    return '\'' + text + '\'';
}

std::string LineOf(const Sources& sources, const Span& span, const Span& from) {
    std::string text = "line " + std::to_string(span.line);
    if (span.file != from.file) text += " of " + sources.At(span.file).name();
    return text;
}

TierId Scope::TierCalled(const syntax::Word& word) {
    const TierId id = m_model.FindTier(word.text);
    if (id != kNoTier) return id;
    std::vector<std::string> names;
    for (const Tier& tier : m_model.tiers) names.push_back(tier.name);
    Error(word.span, "there is no tier " + Quoted(word.text) + DidYouMean(word.text, names));
    return kNoTier;
}

std::string Scope::NearestToken(TierId id, const std::string& word) {
    return DidYouMean(word, tier(id).tokens);
}

int Scope::TokenCalled(TierId id, const syntax::Word& word) {
    const Tier& t = tier(id);
    if (t.kind == Tier::Kind::time || t.kind == Tier::Kind::text) {
        int number = 0;
        const char* pEnd = word.text.data() + word.text.size();
        const auto [p, fault] = std::from_chars(word.text.data(), pEnd, number);
        if (fault == std::errc() && p == pEnd && number >= 0) return number;
        Error(word.span,
              "the tokens of tier " + t.name + " are numbers, found " + Quoted(word.text));
        return -1;
    }
    const int token = t.FindToken(word.text);
    if (token < 0) {
        Error(word.span, "tier " + t.name + " has no token " + Quoted(word.text) +
                             NearestToken(id, word.text));
    }
    return token;
}

std::vector<int> Scope::Cut(TierId id, const syntax::Word& word) {
    const Tier& t = tier(id);
    if (t.kind != Tier::Kind::fromText || word.bQuoted) {
        const int token = TokenCalled(id, word);
        return token < 0 ? std::vector<int>() : std::vector<int>{token};
    }
    std::vector<int> tokens;
    for (std::string_view rest = word.text; !rest.empty();) {
        const int token = LongestToken(t, rest);
        if (token < 0) {
            const bool bWhole = rest.size() == word.text.size();
            Error(word.span,
                  "tier " + t.name + " has no token " + Quoted(word.text) +
                      (bWhole ? "" : ", nor one for its end " + Quoted(std::string(rest))) +
                      NearestToken(id, word.text));
            return {};
        }
        tokens.push_back(token);
        rest.remove_prefix(t.tokens[static_cast<std::size_t>(token)].size());
    }
    return tokens;
}

int Tier::FindToken(std::string_view token) const {
    const auto it = std::find(tokens.begin(), tokens.end(), token);
    return it == tokens.end() ? -1 : static_cast<int>(it - tokens.begin());
}

int Tier::FindField(std::string_view field) const {
    const auto called = [field](const Field& f) { return f.name == field; };
    const auto it = std::find_if(fields.begin(), fields.end(), called);
    return it == fields.end() ? -1 : static_cast<int>(it - fields.begin());
}

TierId Model::FindTier(std::string_view name) const {
    const auto called = [name](const Tier& tier) { return tier.name == name; };
    const auto it = std::find_if(tiers.begin(), tiers.end(), called);
    return it == tiers.end() ? kNoTier : static_cast<TierId>(it - tiers.begin());
}

}  // namespace mlds::rules
