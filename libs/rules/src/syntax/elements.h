// What rules and statements are made of: each function reads one element from a cursor, and throws
// a Fault where it cannot.
#ifndef MLDS_RULES_ELEMENTS_H
#define MLDS_RULES_ELEMENTS_H

#include <vector>

#include "syntax/cursor.h"
#include "syntax/syntax.h"

namespace mlds::rules::syntax {

/// "[...]"
Condition ReadCondition(Cursor& cursor);

/// Sequences with "|" between them, up to what cannot belong to one.
Pattern ReadPattern(Cursor& cursor);
/// A pattern, and then the end of the line.
Pattern ReadWholePattern(Cursor& cursor);
Sequence ReadSequence(Cursor& cursor);

/// The rules of a line. One that cannot be read is reported and left out.
std::vector<Rule> ReadRules(const Line& line, Reporter& reporter);

/// Words and quoted texts up to the end of the line or a "|". What can be no token is reported and
/// left out, so that a tier is not lost with one of its tokens.
std::vector<Word> ReadTokens(Cursor& cursor, Reporter& reporter, const std::string& what);

}  // namespace mlds::rules::syntax

#endif
