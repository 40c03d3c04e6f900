// What all commands of the program share.
#include "program.h"

#include <cerrno>
#include <cstring>
#include <iostream>

namespace mlds_program {

void Complain(const std::string& message) {
    std::cerr << "mlds: " << message << '\n';
}

std::string Reason() {
    return std::strerror(errno != 0 ? errno : EIO);
}

bool FlushOutput() {
    // A write that failed earlier has left its errno; one that fails here sets it.
    if (std::cout.flush()) return true;
    Complain("cannot write to standard output: " + Reason());
    return false;
}

}  // namespace mlds_program
