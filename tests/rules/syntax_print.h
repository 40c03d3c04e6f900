// Syntax trees as one readable line, for comparing.
#ifndef MLDS_TESTS_SYNTAX_PRINT_H
#define MLDS_TESTS_SYNTAX_PRINT_H

#include <string>

#include "syntax/syntax.h"

namespace mlds::rules::syntax {

/// "(block sounds letters->phone first (rule r => rr / # _))"
std::string Printed(const Statement& statement);
/// The statements of a file, one a line.
std::string Printed(const File& file);

}  // namespace mlds::rules::syntax

#endif
