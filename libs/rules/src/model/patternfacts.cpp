// What can be said of a pattern before it is ever tried.
#include <algorithm>

#include "model/patterns.h"

namespace mlds::rules {

namespace {

using Kind = Pattern::Kind;

std::vector<bool> None(const Tier& tier) {
    return std::vector<bool>(tier.tokens.size(), false);
}

void Add(std::vector<bool>& set, const std::vector<bool>& other) {
    for (std::size_t i = 0; i < set.size(); ++i) set[i] = set[i] || other[i];
}

// Adds what the first token of a pattern may be. True if the pattern may also take no token, so
// that what follows it decides.
bool AddFirst(const Tier& tier, const Pattern& pattern, std::vector<bool>& first) {
    switch (pattern.kind) {
        case Kind::token:
            for (std::size_t i = 0; i < first.size(); ++i) {
                const Possible possible = CanMeet(tier, pattern.condition, static_cast<int>(i));
                if (possible != Possible::no) first[i] = true;
            }
            return false;
        case Kind::sequence:
            for (const Pattern& part : pattern.parts) {
                if (!AddFirst(tier, part, first)) return false;
            }
            return true;
        case Kind::choice: {
            bool bEmpty = false;
            for (const Pattern& part : pattern.parts) bEmpty |= AddFirst(tier, part, first);
            return bEmpty;
        }
        case Kind::repeat:
            return AddFirst(tier, pattern.parts.front(), first) || pattern.least == 0;
        case Kind::cross:
            // What it passes over in this tier is not known.
            std::fill(first.begin(), first.end(), true);
            return false;
        default: return true;
    }
}

bool IsSameCondition(const Condition& a, const Condition& b) {
    return a.kind == b.kind && a.field == b.field && a.comparison == b.comparison &&
           a.value == b.value && a.variable == b.variable &&
           std::equal(a.parts.begin(), a.parts.end(), b.parts.begin(), b.parts.end(),
                      IsSameCondition);
}

}  // namespace

bool CanBeEmpty(const Pattern& pattern) {
    switch (pattern.kind) {
        case Kind::token: return false;
        case Kind::sequence:
            return std::all_of(pattern.parts.begin(), pattern.parts.end(), CanBeEmpty);
        case Kind::choice:
            return std::any_of(pattern.parts.begin(), pattern.parts.end(), CanBeEmpty);
        case Kind::repeat: return pattern.least == 0 || CanBeEmpty(pattern.parts.front());
        case Kind::cross: return CanBeEmpty(pattern.parts.front());
        default: return true;
    }
}

bool CanTake(const Pattern& pattern) {
    switch (pattern.kind) {
        case Kind::token: return true;
        case Kind::sequence:
        case Kind::choice:
        case Kind::cross: return std::any_of(pattern.parts.begin(), pattern.parts.end(), CanTake);
        case Kind::repeat: return pattern.most != 0 && CanTake(pattern.parts.front());
        default: return false;
    }
}

bool TakesOneToken(const Pattern& pattern) {
    switch (pattern.kind) {
        case Kind::token: return true;
        case Kind::sequence: {
            // Conditions that move nothing may stand around the token.
            int nTokens = 0;
            for (const Pattern& part : pattern.parts) {
                if (TakesOneToken(part)) {
                    ++nTokens;
                } else if (part.kind == Kind::repeat || part.kind == Kind::choice ||
                           part.kind == Kind::sequence || part.kind == Kind::cross) {
                    return false;
                }
            }
            return nTokens == 1;
        }
        case Kind::choice:
            return std::all_of(pattern.parts.begin(), pattern.parts.end(), TakesOneToken);
        case Kind::repeat:
            return pattern.least == 1 && pattern.most == 1 && TakesOneToken(pattern.parts.front());
        default: return false;
    }
}

bool IsSame(const Pattern& a, const Pattern& b) {
    return a.kind == b.kind && a.tier == b.tier && a.variable == b.variable && a.least == b.least &&
           a.most == b.most && a.bShortest == b.bShortest &&
           IsSameCondition(a.condition, b.condition) &&
           std::equal(a.parts.begin(), a.parts.end(), b.parts.begin(), b.parts.end(), IsSame);
}

std::vector<bool> FirstTokens(const Tier& tier, const Pattern& pattern) {
    std::vector<bool> first = None(tier);
    if (AddFirst(tier, pattern, first)) std::fill(first.begin(), first.end(), true);
    return first;
}

std::vector<bool> CoveredTokens(const Tier& tier, const Pattern& pattern) {
    std::vector<bool> covered = None(tier);
    switch (pattern.kind) {
        case Kind::token:
            for (std::size_t i = 0; i < covered.size(); ++i) {
                const Possible possible = CanMeet(tier, pattern.condition, static_cast<int>(i));
                covered[i] = possible == Possible::yes;
            }
            break;
        case Kind::choice:
            for (const Pattern& part : pattern.parts) Add(covered, CoveredTokens(tier, part));
            break;
        case Kind::repeat:
            if (pattern.least <= 1 && pattern.most != 0) {
                return CoveredTokens(tier, pattern.parts.front());
            }
            break;
        case Kind::sequence: {
            // One part that takes a token, and others that may take none and ask for nothing.
            const Pattern* pOnly = nullptr;
            for (const Pattern& part : pattern.parts) {
                const bool bOptional = part.kind == Kind::repeat && part.least == 0;
                if (bOptional || part.kind == Kind::setMark) continue;
                if (pOnly != nullptr) return covered;
                pOnly = &part;
            }
            if (pOnly != nullptr) return CoveredTokens(tier, *pOnly);
            break;
        }
        default: break;
    }
    return covered;
}

}  // namespace mlds::rules
