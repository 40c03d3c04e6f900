// Tokens as people read them: with the marks of "show" around them, and back.
#include "text/shown.h"

#include <algorithm>
#include <charconv>

#include "codepoints.h"
#include "mlds/rules/diagnostics.h"
#include "text/shownreader.h"
#include "text/textreader.h"

namespace mlds::rules {

namespace {

// Whether a condition only asks fields to be equal to something, and which.
bool AsSettings(const Tier& tier, const Condition& condition, std::vector<Setting>& settings) {
    if (condition.kind == Condition::Kind::all) {
        return std::all_of(condition.parts.begin(), condition.parts.end(),
                           [&](const Condition& part) { return AsSettings(tier, part, settings); });
    }
    const auto field = static_cast<std::size_t>(condition.field);
    if (condition.kind != Condition::Kind::compare || condition.field < 0 ||
        condition.comparison != Comparison::equal || field >= tier.fields.size() ||
        tier.fields[field].kind == Field::Kind::name) {
        return false;
    }
    settings.push_back({condition.field, condition.value, condition.span});
    return true;
}

bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

}  // namespace

// How much of a word is left when its first or last marks are taken off.
struct ShownReader::Strip {
    std::size_t length = 0;  ///< of the marks, in bytes
    std::vector<const Mark*> marks;
};

ShownReader::ShownReader(const Model& model, TierId tier)
    : m_pTier(&model.tiers.at(static_cast<std::size_t>(tier))) {
    for (std::size_t i = 0; i < m_pTier->tokens.size(); ++i) {
        m_tokens.emplace(m_pTier->tokens[i], static_cast<int>(i));
    }
    for (const ShowMark& show : model.showMarks) {
        if (show.tier != tier || show.bIpa || show.mark.empty()) continue;
        Mark mark{show.mark, {}, {}};
        if (!AsSettings(*m_pTier, show.condition, mark.settings)) {
            mark.unreadable = "the mark " + show.mark +
                              " cannot be read back: what it stands for is no list of values";
        }
        (show.bBefore ? m_before : m_after).push_back(std::move(mark));
    }
    // The longest mark is tried first, each once.
    const auto longer = [](const Mark& a, const Mark& b) { return a.text.size() > b.text.size(); };
    std::stable_sort(m_before.begin(), m_before.end(), longer);
    std::stable_sort(m_after.begin(), m_after.end(), longer);
}

// Every way to end with a length of marks, each mark once; one way for each length, so that marks
// which begin with each other cost no more than they are long.
std::vector<ShownReader::Strip> ShownReader::Strips(const std::vector<Mark>& marks,
                                                    std::string_view word, bool bBefore) {
    std::vector<Strip> strips(1);
    for (std::size_t i = 0; i < strips.size(); ++i) {
        const Strip from = strips[i];
        const std::string_view rest =
            bBefore ? word.substr(from.length) : word.substr(0, word.size() - from.length);
        for (const Mark& mark : marks) {
            const bool bFits = bBefore ? rest.starts_with(mark.text) : rest.ends_with(mark.text);
            if (!bFits ||
                std::find(from.marks.begin(), from.marks.end(), &mark) != from.marks.end()) {
                continue;
            }
            Strip next = from;
            next.length += mark.text.size();
            next.marks.push_back(&mark);
            const bool bReached =
                std::any_of(strips.begin(), strips.end(),
                            [&](const Strip& strip) { return strip.length == next.length; });
            if (!bReached) strips.push_back(std::move(next));
        }
    }
    std::sort(strips.begin(), strips.end(),
              [](const Strip& a, const Strip& b) { return a.length < b.length; });
    return strips;
}

bool ShownReader::ReadTime(std::string_view word, Piece& piece, std::string& fault) const {
    int value = 0;
    const auto [pEnd, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    if (error != std::errc() || pEnd != word.data() + word.size() || value < 0) {
        fault = "'" + Composed(Shortened(word)) + "' is no time: tier " + m_pTier->name +
                " takes whole numbers from 0 to 2147483647";
        return false;
    }
    piece.name = word;
    return true;
}

// The marks are not what is wrong: names near the rest of the word are offered.
std::string ShownReader::Unknown(std::string_view word) const {
    std::string_view rest = word.substr(Strips(m_before, word, true).back().length);
    rest.remove_suffix(Strips(m_after, rest, false).back().length);
    if (rest.empty()) rest = word;
    return "tier " + m_pTier->name + " has no token '" + Composed(Shortened(rest)) + "'" +
           DidYouMean(rest, m_pTier->tokens);
}

// The longest token that is left when marks are taken off; its index, or -1.
int ShownReader::FindMarked(std::string_view word, Strip& before, Strip& after) const {
    int token = -1;
    std::size_t longest = 0;
    const std::vector<Strip> afters = Strips(m_after, word, false);
    for (const Strip& front : Strips(m_before, word, true)) {
        for (const Strip& back : afters) {
            if (front.length + back.length + longest >= word.size()) continue;
            const std::size_t length = word.size() - front.length - back.length;
            const auto found = m_tokens.find(word.substr(front.length, length));
            if (found == m_tokens.end()) continue;
            token = found->second;
            longest = length;
            before = front;
            after = back;
        }
    }
    return token;
}

bool ShownReader::ReadToken(std::string_view word, Piece& piece, std::string& fault) const {
    piece = Piece{};
    if (m_pTier->kind == Tier::Kind::time) return ReadTime(word, piece, fault);
    Strip before;
    Strip after;
    // Most tokens are shown without a mark, and a token that begins with a mark is itself.
    const auto plain = m_tokens.find(word);
    piece.token = plain != m_tokens.end() ? plain->second : FindMarked(word, before, after);
    if (piece.token < 0) {
        fault = Unknown(word);
        return false;
    }
    piece.name = m_pTier->tokens[static_cast<std::size_t>(piece.token)];
    for (const Strip* pStrip : {&before, &after}) {
        for (const Mark* pMark : pStrip->marks) {
            fault = pMark->unreadable;
            if (!fault.empty()) return false;
            piece.settings.insert(piece.settings.end(), pMark->settings.begin(),
                                  pMark->settings.end());
        }
    }
    return true;
}

bool ShownReader::Read(std::string_view text, ShownText& shown) const {
    int column = 1;
    for (std::size_t at = 0; at < text.size();) {
        if (IsBlank(text[at])) {
            ++at;
            ++column;
            continue;
        }
        const std::size_t begin = at;
        while (at < text.size() && !IsBlank(text[at])) ++at;
        const std::string_view word = text.substr(begin, at - begin);
        const int length = CountCodePoints(word);
        Piece& piece = shown.pieces.emplace_back();
        if (!ReadToken(word, piece, shown.fault)) {
            shown.pieces.pop_back();
            shown.column = column;
            shown.length = length;
            return false;
        }
        piece.span.column = column;
        piece.span.length = length;
        column += length;
    }
    return true;
}

ShownText ReadShown(const Model& model, TierId tier, std::string_view text) {
    ShownText shown;
    if (tier < 0 || static_cast<std::size_t>(tier) >= model.tiers.size()) {
        shown.fault = "there is no such tier";
        return shown;
    }
    ShownReader(model, tier).Read(text, shown);
    return shown;
}

}  // namespace mlds::rules
