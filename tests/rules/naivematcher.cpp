// Backtracking over plain lists: a pattern calls what follows it for each of its ways in turn.
#include "naivematcher.h"

namespace mlds_test {

using mlds::rules::Comparison;
using mlds::rules::Condition;
using mlds::rules::Environment;
using mlds::rules::Pattern;
using mlds::rules::Rule;

bool NaiveMatcher::Holds(const Condition& condition, const NaiveToken& token, const State& state) {
    const auto field = static_cast<std::size_t>(condition.field);
    switch (condition.kind) {
        case Condition::Kind::all:
            for (const Condition& part : condition.parts) {
                if (!Holds(part, token, state)) return false;
            }
            return true;
        case Condition::Kind::any:
            for (const Condition& part : condition.parts) {
                if (Holds(part, token, state)) return true;
            }
            return false;
        case Condition::Kind::isNot: return !Holds(condition.parts[0], token, state);
        case Condition::Kind::sameAs: {
            const auto found = state.tokens.find(condition.variable);
            return found != state.tokens.end() && found->second[field] == token[field];
        }
        case Condition::Kind::compare: break;
    }
    const int value = token[field];
    switch (condition.comparison) {
        case Comparison::equal: return value == condition.value;
        case Comparison::notEqual: return value != condition.value;
        case Comparison::less: return value < condition.value;
        case Comparison::lessOrEqual: return value <= condition.value;
        case Comparison::greater: return value > condition.value;
        default: return value >= condition.value;
    }
}

std::vector<int> NaiveMatcher::PlacesHere(int at, int step) const {
    std::vector<int> places = {at};
    while (!IsLast(places.back(), step) && !Beyond(places.back(), step)) {
        places.push_back(places.back() + step);
    }
    return places;
}

bool NaiveMatcher::TakeToken(const Pattern& pattern, State state, int step, const Then& then) {
    const std::vector<int> places = PlacesHere(state.at, step);
    for (const int place : places) {
        const bool bEdge = m_tier.edges[static_cast<std::size_t>(place)];
        if (m_bWithin && !state.bFirst && bEdge) return false;
    }
    if (IsLast(places.back(), step)) return false;
    const NaiveToken& token = *Beyond(places.back(), step);
    if (!Holds(pattern.condition, token, state)) return false;
    if (pattern.variable >= 0) state.tokens[pattern.variable] = token;
    state.at = places.back() + step;
    state.bFirst = false;
    return then(state);
}

bool NaiveMatcher::MatchParts(const std::vector<Pattern>& parts, std::size_t done,
                              const State& state, int step, const Then& then) {
    if (done == parts.size()) return then(state);
    const Pattern& next = parts[step > 0 ? done : parts.size() - 1 - done];
    return Match(next, state, step, [&](const State& behind) {
        return MatchParts(parts, done + 1, behind, step, then);
    });
}

bool NaiveMatcher::Repeat(const Pattern& pattern, int times, const State& state, int step,
                          const Then& then) {
    const auto again = [&] {
        return (pattern.most < 0 || times < pattern.most) &&
               Match(pattern.parts[0], state, step, [&](const State& behind) {
                   return Repeat(pattern, times + 1, behind, step, then);
               });
    };
    if (times < pattern.least) return again();
    if (pattern.bShortest) return then(state) || again();
    return again() || then(state);
}

bool NaiveMatcher::Match(const Pattern& pattern, const State& state, int step, const Then& then) {
    const auto moved = [&](int at) {
        State behind = state;
        behind.at = at;
        return then(behind);
    };
    const auto looks = [&] {
        return Match(pattern.parts[0], state, step, [](const State&) { return true; });
    };
    switch (pattern.kind) {
        case Pattern::Kind::token: return TakeToken(pattern, state, step, then);
        case Pattern::Kind::sequence: return MatchParts(pattern.parts, 0, state, step, then);
        case Pattern::Kind::choice:
            for (const Pattern& part : pattern.parts) {
                if (Match(part, state, step, then)) return true;
            }
            return false;
        case Pattern::Kind::repeat: return Repeat(pattern, 0, state, step, then);
        case Pattern::Kind::lookAhead: return looks() && then(state);
        case Pattern::Kind::lookNot: return !looks() && then(state);
        case Pattern::Kind::setMark: {
            State behind = state;
            behind.marks[pattern.variable] = state.at;
            return then(behind);
        }
        case Pattern::Kind::atMark:
            for (const int place : PlacesHere(state.at, step)) {
                const auto mark = state.marks.find(pattern.variable);
                if (mark != state.marks.end() && mark->second == place) return moved(place);
            }
            return false;
        case Pattern::Kind::edge:
            for (const int place : PlacesHere(state.at, step)) {
                if (m_tier.edges[static_cast<std::size_t>(place)]) return moved(place);
            }
            return false;
        case Pattern::Kind::utteranceEdge:
            return IsLast(PlacesHere(state.at, step).back(), step) && then(state);
        default: return false;  // crossings need more than one list
    }
}

// The first way to match the focus and what stands right of it. With `end` the focus has to end
// there.
std::optional<NaiveMatcher::State> NaiveMatcher::FindFocus(const Rule& rule,
                                                           const Environment& environment,
                                                           State state, std::optional<int> end,
                                                           int* pEnd) {
    std::optional<State> found;
    const Then right = [&](const State& behind) {
        int ends = behind.at;
        State from = behind;
        if (end) {
            bool bThere = false;
            for (const int place : PlacesHere(behind.at, 1)) bThere = bThere || place == *end;
            if (!bThere) return false;
            ends = from.at = *end;
        }
        from.bFirst = rule.bInsertion && !rule.bBehindToken;
        return Match(environment.right, from, 1, [&](const State& last) {
            found = last;
            *pEnd = ends;
            return true;
        });
    };
    if (rule.bInsertion) {
        right(state);
    } else {
        state.bFirst = true;
        Match(rule.focus, state, 1, right);
    }
    return found;
}

std::optional<NaiveMatch> NaiveMatcher::Apply(const Rule& rule, int at) {
    const auto holds = [&](const Environment& environment, std::optional<int> end) {
        std::optional<NaiveMatch> match;
        State state;
        state.at = at;
        int ends = at;
        const auto found = FindFocus(rule, environment, state, end, &ends);
        if (!found) return match;
        State left = *found;
        left.at = at;
        left.bFirst = rule.bInsertion && rule.bBehindToken;
        Match(environment.left, left, -1, [&](const State& last) {
            match = NaiveMatch{ends, last.marks};
            return true;
        });
        return match;
    };
    std::optional<NaiveMatch> match;
    if (rule.where.empty()) match = holds({}, {});
    for (const Environment& environment : rule.where) {
        if (!match) match = holds(environment, {});
    }
    for (const Environment& environment : rule.except) {
        if (match && holds(environment, match->end)) return std::nullopt;
    }
    return match;
}

}  // namespace mlds_test
