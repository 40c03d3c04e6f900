// The statements of a rule file, each from its lines.
#ifndef MLDS_RULES_STATEMENTS_H
#define MLDS_RULES_STATEMENTS_H

#include <optional>
#include <string_view>

#include "syntax/lines.h"
#include "syntax/syntax.h"

namespace mlds::rules::syntax {

bool IsStatementName(std::string_view word);
/// "feature", "field" and the others that begin an indented line of a tier.
const std::vector<std::string>& TierPartNames();

/// Statements of which what can be read is kept, as others speak of their names. Nothing if not
/// even the name can be read.
std::optional<Tier> ReadTier(const StatementLines& lines, Reporter& reporter);
std::optional<Block> ReadBlock(const StatementLines& lines, Reporter& reporter);

/// Statements that are one line (and what continues it). Throws a Fault where it cannot be read.
Statement ReadOneLine(std::string_view keyword, const Line& line);

/// "expand REGEX as words"
Expansion ReadExpansion(const Line& line, std::size_t behindKeyword);
/// "assert "x" => k s"
Assert ReadAssert(const Line& line);

}  // namespace mlds::rules::syntax

#endif
