// The names that the tests of the assembler use.
#ifndef MLDS_TESTS_TESTASM_NAMES_H
#define MLDS_TESTS_TESTASM_NAMES_H

#include "mlds/testasm/diagnostics.h"
#include "mlds/testasm/schema.h"

namespace mlds_testasm_test {

inline mlds_testasm::Schema Names() {
    mlds_testasm::Diagnostics diagnostics("names");
    return mlds_testasm::ReadSchema(R"(stream inp
field name char
field n int
field open bool
field f float
stream phone
field name enum a e 'tS'
field vowel enum yes no
set yes no
field both enum x y
set y
variable ^c ^end $seen
)",
                                    diagnostics);
}

}  // namespace mlds_testasm_test

#endif
