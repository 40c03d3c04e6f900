// Reading rule files with all that they include.
#ifndef MLDS_RULES_LOAD_H
#define MLDS_RULES_LOAD_H

#include <optional>
#include <string>
#include <vector>

#include "mlds/rules/diagnostics.h"
#include "syntax/syntax.h"

namespace mlds::rules {

/// A whole file; nothing if it cannot be read, `pReason` then says why.
std::optional<std::string> ReadWholeFile(const std::string& path, std::string* pReason);

/// A file that another one names: beside that one, if the name is not absolute.
std::string Beside(const std::string& file, const std::string& name);

/// The statements of a source, with those of the files that it includes in their places.
std::vector<syntax::Statement> LoadStatements(Sources& sources, int file, Diagnostics& diagnostics);

}  // namespace mlds::rules

#endif
