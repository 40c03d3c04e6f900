// What is wrong with a program, before anything runs it.
#ifndef MLDS_TESTASM_VALIDATE_H
#define MLDS_TESTASM_VALIDATE_H

#include "mlds/testasm/model.h"
#include "mlds/testasm/schema.h"

namespace mlds_testasm {

/// Reports what the interpreter would make fail without a word, and, as warnings, what is hardly
/// meant. Without streams in the schema any number is a stream, likewise with variables. Tests
/// whose text could not be read are left out.
void Validate(const Program& program, const Schema& schema, Diagnostics& diagnostics);

/// Reports, as warnings or errors, repetitions of what can match without moving, and instructions
/// that can come back to themselves without having moved. The test must be valid otherwise.
void CheckProgress(const Test& test, const Schema& schema, Diagnostics& diagnostics);

}  // namespace mlds_testasm

#endif
