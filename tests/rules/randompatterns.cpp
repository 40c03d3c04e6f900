// Making rules and words at random.
#include "randompatterns.h"

#include <algorithm>

namespace mlds_test {

using mlds::rules::Environment;
using mlds::rules::Model;
using mlds::rules::Rule;
using RuleTier = mlds::rules::Tier;

Model MakeLetters() {
    Model model;
    model.tiers.push_back(MakeTier("text", RuleTier::Kind::text, {}));
    RuleTier letters = MakeTier("letters", RuleTier::Kind::fromText, {"a", "b", "c", "d"});
    AddFeature(letters, "vowel", {"yes", "no"}, {0, 1, 1, 1});
    AddFeature(letters, "kind", {"lip", "teeth"}, {-1, 0, 1, 1});
    mlds::rules::Field& stress = letters.fields.emplace_back();
    stress.name = "stress";
    stress.kind = mlds::rules::Field::Kind::number;
    model.tiers.push_back(letters);
    model.tiers.push_back(MakeTier("word", RuleTier::Kind::spans, {"word"}));
    model.tiers.back().spanned = kLetters;
    return model;
}

namespace {

bool MayTakeNothing(const Pattern& pattern) {
    const auto& parts = pattern.parts;
    switch (pattern.kind) {
        case Kind::token: return false;
        case Kind::sequence: return std::all_of(parts.begin(), parts.end(), MayTakeNothing);
        case Kind::choice: return std::any_of(parts.begin(), parts.end(), MayTakeNothing);
        case Kind::repeat: return pattern.least == 0 || MayTakeNothing(parts[0]);
        default: return true;
    }
}

}  // namespace

Condition RandomRules::MakeCondition(int depth, int variable) {
    Condition condition;
    switch (Below(depth > 0 ? 9 : 5)) {
        case 0:
        case 1: return Compare(0, Below(4));
        case 2: return Compare(1, Below(2));
        case 3: return Compare(2, Below(2), static_cast<Comparison>(Below(2)));
        case 4: return Compare(3, Below(3), static_cast<Comparison>(Below(6)));
        case 5:
            condition.kind = Condition::Kind::isNot;
            condition.parts = {MakeCondition(depth - 1, variable)};
            return condition;
        case 6: return variable < 0 ? Condition() : SameAs(variable, Below(4));
        default:
            condition.kind = Once(2) ? Condition::Kind::all : Condition::Kind::any;
            for (int i = Below(4); i-- > 0;) {
                condition.parts.push_back(MakeCondition(depth - 1, variable));
            }
            return condition;
    }
}

// The left side binds what the other one does not ask for, so that the other one can go first.
Pattern RandomRules::MakeToken(Side side, bool bMayBind) {
    const int own = side == Side::left ? 1 : 0;
    if (bMayBind && Once(4)) return Token(MakeCondition(1, -1), own);
    const int asked = side == Side::left ? Below(2) : 0;
    if (Once(5)) return Token(SameAs(asked, Below(3)));
    return Token(Once(6) ? Condition() : MakeCondition(2, Once(3) ? asked : -1));
}

Pattern RandomRules::MakeRepeat(int depth, Side side, bool bMayBind) {
    Pattern part = MakePattern(depth - 1, side, bMayBind);
    const int least = Below(3);
    const bool bEndless = Once(2) && !MayTakeNothing(part);
    return Repeat(std::move(part), least, bEndless ? -1 : least + Below(3), Once(3));
}

Pattern RandomRules::MakePattern(int depth, Side side, bool bMayBind) {
    const int what = depth > 0 ? Below(20) : 12 + Below(8);
    Pattern pattern;
    switch (what) {
        case 0:
        case 1:
        case 2:
        case 3: {
            pattern.kind = what < 2 ? Kind::sequence : Kind::choice;
            for (int i = 2 + Below(2); i-- > 0;) {
                pattern.parts.push_back(MakePattern(depth - 1, side, bMayBind));
            }
            return pattern;
        }
        case 4:
        case 5:
        case 6:
        case 7: return MakeRepeat(depth, side, bMayBind);
        // What is bound while looking stays bound where the way that looked fails.
        case 8: return Make(Kind::lookAhead, {MakePattern(depth - 1, side, false)});
        case 9: return Make(Kind::lookNot, {MakePattern(depth - 1, side, false)});
        case 12:
            if (Once(4)) return Make(Kind::utteranceEdge);
            return InTier(Kind::edge, kWords);
        case 13: {
            const int own = side == Side::left ? 3 : 2;
            if (Once(2) && bMayBind) return Make(Kind::setMark, {}, own);
            return Make(Kind::atMark, {}, side == Side::left ? 2 + Below(2) : 2);
        }
        default: return MakeToken(side, bMayBind);
    }
}

Environment RandomRules::MakeEnvironment() {
    Environment environment;
    const auto side = [&](Side which) {
        Pattern sequence;
        for (int i = Below(3); i-- > 0;) sequence.parts.push_back(MakePattern(2, which, true));
        return sequence;
    };
    environment.left = side(Side::left);
    environment.right = side(Side::right);
    return environment;
}

Rule RandomRules::MakeRule() {
    Rule rule;
    rule.variables = {{"x", true, {}}, {"y", true, {}}, {"m", false, {}}, {"n", false, {}}};
    rule.bInsertion = Once(6);
    rule.bBehindToken = rule.bInsertion && Once(2);
    do {
        rule.focus = MakePattern(3, Side::right, true);
    } while (MayTakeNothing(rule.focus));
    if (rule.bInsertion) rule.focus = {};
    for (int i = Below(3); i-- > 0;) rule.where.push_back(MakeEnvironment());
    if (Once(4)) rule.except.push_back(MakeEnvironment());
    return rule;
}

NaiveTier RandomRules::MakeTier(const Model& model, CPlexa& plexa) {
    NaiveTier tier;
    std::string letters = "||";
    std::string words = "|";
    std::vector<int> edges;  // by their marks in the picture of the letters
    std::vector<int> stress;
    tier.between.emplace_back();
    const auto add = [&](std::optional<NaiveToken> token) {
        if (token) {
            letters += model.tiers[kLetters].tokens[static_cast<std::size_t>((*token)[0])];
            stress.push_back((*token)[3]);
        }
        tier.between.push_back(std::move(token));
        letters += '|';
    };
    const auto edge = [&] { edges.push_back(static_cast<int>(tier.between.size()) - 1); };
    for (int word = 0, n = 1 + Below(3); word < n; ++word) {
        // Words may touch: the end of one is the beginning of the next, then.
        if (word == 0 || Once(2)) {
            if (word > 0 || Once(2)) add({});
            edge();
            words += '|';
        }
        for (int i = 0, size = 1 + Below(3); i < size; ++i) {
            const int name = Below(4);
            const int kinds[] = {2, 0, 1, 1};
            add(NaiveToken{name, name == 0 ? 0 : 1, kinds[name], Below(3)});
            if (Once(8)) add({});
        }
        edge();
        words += "word|";
    }
    if (Once(3)) add({});
    letters += '|';
    tier.between.emplace_back();
    tier.edges.assign(tier.between.size() + 1, false);
    tier.edges.front() = tier.edges.back() = true;

    plexa.CPlexaReset();
    CStream* pLetters = plexa.pStream(kLetters);
    CStream* pWords = plexa.pStream(kWords);
    Fill(pLetters, letters);
    Fill(pWords, words + "|");
    for (std::size_t i = 0; i < stress.size(); ++i) {
        mlds_test::Token(pLetters, static_cast<int>(i))->SetFieldValue(3, stress[i]);
    }
    for (std::size_t i = 0; i < edges.size(); ++i) {
        Mark(pLetters, edges[i])->SetToSynchronous(Mark(pWords, static_cast<int>(i)));
        tier.edges[static_cast<std::size_t>(edges[i]) + 1] = true;
    }
    return tier;
}

}  // namespace mlds_test
