// What the patterns of rules mean, on plain lists of tokens: a second matcher that knows neither
// streams nor instructions.
#ifndef MLDS_TESTS_RULES_NAIVEMATCHER_H
#define MLDS_TESTS_RULES_NAIVEMATCHER_H

#include <functional>
#include <map>
#include <optional>
#include <vector>

#include "mlds/rules/model.h"

namespace mlds_test {

/// A token by its field values.
using NaiveToken = std::vector<int>;

/// A tier: places, and what lies between each and the next one, if anything does. The first and the
/// last place are the ends of the utterance.
struct NaiveTier {
    std::vector<std::optional<NaiveToken>> between;  ///< one less than places
    std::vector<bool> edges;                         ///< the places where a word begins or ends
};

/// Where a focus ends, and the places that marks were set to.
struct NaiveMatch {
    int end = 0;
    std::map<int, int> marks;
};

class NaiveMatcher {
public:
    NaiveMatcher(const NaiveTier& tier, bool bWithin) : m_tier(tier), m_bWithin(bWithin) {}

    /// The first way in which a rule holds at a place, if it applies there.
    std::optional<NaiveMatch> Apply(const mlds::rules::Rule& rule, int at);

private:
    struct State {
        int at = 0;
        bool bFirst = false;  // no token was taken yet, and the next one may be anywhere
        std::map<int, NaiveToken> tokens;
        std::map<int, int> marks;
    };
    using Then = std::function<bool(const State&)>;

    bool Match(const mlds::rules::Pattern& pattern, const State& state, int step, const Then& then);
    bool MatchParts(const std::vector<mlds::rules::Pattern>& parts, std::size_t done,
                    const State& state, int step, const Then& then);
    bool Repeat(const mlds::rules::Pattern& pattern, int times, const State& state, int step,
                const Then& then);
    bool TakeToken(const mlds::rules::Pattern& pattern, State state, int step, const Then& then);
    bool Holds(const mlds::rules::Condition& condition, const NaiveToken& token,
               const State& state);
    std::optional<State> FindFocus(const mlds::rules::Rule& rule,
                                   const mlds::rules::Environment& environment, State state,
                                   std::optional<int> end, int* pEnd);
    // Places with nothing between them and this one, this one first, in one direction.
    std::vector<int> PlacesHere(int at, int step) const;
    const std::optional<NaiveToken>& Beyond(int at, int step) const {
        return m_tier.between[static_cast<std::size_t>(step > 0 ? at : at - 1)];
    }
    bool IsLast(int at, int step) const {
        return at == (step > 0 ? static_cast<int>(m_tier.between.size()) : 0);
    }

    const NaiveTier& m_tier;
    const bool m_bWithin;
};

}  // namespace mlds_test

#endif
