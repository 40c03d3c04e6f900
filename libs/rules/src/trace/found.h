// What stands at a place, and what was wanted there, in words.
#ifndef MLDS_RULES_FOUND_H
#define MLDS_RULES_FOUND_H

#include <string>

#include "mlds/rules/rulehost.h"

namespace mlds::rules {

/// The element as the rule has it: "[front]", "u", "# or ...".
std::string WantedText(const RuleSet& rules, TierId tier, const Pattern& pattern);

/// The next token from a mark in a direction, with what it has of the features that the condition
/// asks for: "e without front", "a, stress=0"; "the end of the utterance" where there is none.
std::string FoundText(RuleHost& host, CSyncMark* pAt, bool bLeftward, const Condition* pCondition);

/// The labels of the tokens between two marks, as one word: "qu"; with blanks where tokens have
/// longer names.
std::string TokensText(RuleHost& host, CSyncMark* pLeft, CSyncMark* pRight);

}  // namespace mlds::rules

#endif
