// Test programs in files.
//
//     8 bytes   "mldstest"
//     number    1, the version of the format
//     number    of tests
//     number    of instructions
//     per test  its base, the length of its name, the name
//     5 bytes per instruction
//
// Numbers have four bytes, the most significant first, as in the instructions themselves.
#ifndef MLDS_TESTASM_FILE_H
#define MLDS_TESTASM_FILE_H

#include <string>
#include <string_view>

#include "mlds/testasm/image.h"

namespace mlds_testasm {

std::string WriteImage(const Image& image);

/// False, and what was expected, if the bytes are no such file.
bool ReadImage(std::string_view bytes, Image* pImage, std::string* pExpected);

}  // namespace mlds_testasm

#endif
