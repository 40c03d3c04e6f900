// What fills the tiers before the first rule: text, letters, words, and what a lexicon knows.
#ifndef MLDS_RULES_FILL_H
#define MLDS_RULES_FILL_H

#include "compiled.h"
#include "host/ruletests.h"
#include "mlds/mlds.h"
#include "text/textreader.h"

namespace mlds::rules {

/// Fills tier text with the characters and the tier from text with the letters, tied where a
/// stretch of both ends. False when memory runs out.
bool FillText(CPlexa& plexa, const Model& model, const ReadText& text);

/// Lays a token over every longest run of the tier that a spanning tier spans. False when memory
/// runs out.
bool FillSpans(CPlexa& plexa, const CompiledRules& rules, RuleTests& tests, TierId tier);

/// Gives the words that a lexicon knows their tokens, where there are none yet. False when memory
/// runs out.
bool FillFromLexicon(CPlexa& plexa, const CompiledRules& rules, std::size_t lexicon);

/// Puts the tokens of a result between two neighbouring marks, each but the first behind a new
/// mark. False when memory runs out.
bool InsertPieces(CPlexa& plexa, TierId tier, std::span<const Piece> pieces, CSyncMark* pLeft,
                  CSyncMark* pRight);

}  // namespace mlds::rules

#endif
