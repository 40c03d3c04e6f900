// Declarations of names, one a line.
#ifndef MLDS_TESTASM_DECLARATIONS_H
#define MLDS_TESTASM_DECLARATIONS_H

#include "mlds/testasm/schema.h"
#include "scan.h"

namespace mlds_testasm {

/// Takes one declaration into a schema. False, with nothing read, if the line is none.
bool ReadDeclaration(Line& line, Schema& schema, Diagnostics& diagnostics);

}  // namespace mlds_testasm

#endif
