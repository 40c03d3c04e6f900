// How tokens are shown.
#ifndef MLDS_RULES_LABELS_H
#define MLDS_RULES_LABELS_H

#include <string>

#include "mlds/mlds.h"
#include "mlds/rules/model.h"

namespace mlds::rules {

/// True if a token meets a condition that asks for no captures.
bool Meets(CToken* pToken, const Condition& condition);

/// The token as "show" writes it, in the signs of its tier or in IPA. A token of tier text, whose
/// name is a number, is left to the caller.
std::string LabelOf(const Model& model, CToken* pToken, bool bIpa);

/// A token of a tier that is shown by another: the tokens of that one which lie under it, without
/// blanks, and the marks of its own.
std::string LabelBy(const Model& model, CToken* pToken, CPlexa& plexa, TierId by, bool bIpa);

/// By which tier a tier is shown, null for by itself.
const ShowBy* FindShowBy(const Model& model, TierId tier);

/// All tokens of a tier as they are shown: one blank between those of a word, two between words.
std::string ShownTier(const Model& model, CPlexa& plexa, TierId tier);

/// All tokens of a tier in IPA, one word behind the other with a blank between. What "show ... in
/// ipa" says of any tier stands where that tier's tokens begin and end.
std::string IpaOfTier(const Model& model, CPlexa& plexa, TierId tier);

}  // namespace mlds::rules

#endif
