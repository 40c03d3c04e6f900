// How tokens are shown.
#ifndef MLDS_RULES_LABELS_H
#define MLDS_RULES_LABELS_H

#include <string>

#include "mlds/mlds.h"
#include "mlds/rules/model.h"

namespace mlds::rules {

/// True if a token meets a condition that asks for no captures.
bool Meets(CToken* pToken, const Condition& condition);

/// The tier by whose tokens another one is shown; kNoTier for those that show their own.
TierId ShownBy(const Model& model, TierId tier);

/// The token as "show" writes it, in the signs of its tier or in IPA: its own name, or the tokens
/// under it of the tier that it is shown by, without blanks; and the marks. A token of tier text,
/// whose name is a number, is left to the caller.
std::string LabelOf(const Model& model, CPlexa& plexa, CToken* pToken, bool bIpa);

/// All tokens of a tier: one blank between those of a word, two between words.
std::string ShownTier(const Model& model, CPlexa& plexa, TierId tier);

/// All tokens of a tier in IPA, one word behind the other with a blank between. What "show ... in
/// ipa" says of any tier stands where that tier's tokens begin and end.
std::string IpaOfTier(const Model& model, CPlexa& plexa, TierId tier);

}  // namespace mlds::rules

#endif
