// mlds new: a small rule file to start from.
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <iostream>
#include <string_view>

#include "commands.h"
#include "program.h"
#include "startertext.h"

namespace mlds_program {

namespace {

bool WriteAll(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const ssize_t n = ::write(descriptor, text.data(), text.size());
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        text.remove_prefix(static_cast<std::size_t>(n));
    }
    return true;
}

}  // namespace

int New(const std::string& file) {
    // What is there already is never written over, also if it appears at this moment.
    const int descriptor = ::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor < 0 && errno == EEXIST) {
        Complain(file + " is there already, and stays as it is");
        return kBadUse;
    }
    bool bWritten = descriptor >= 0 && WriteAll(descriptor, kStarterText);
    if (descriptor >= 0 && ::close(descriptor) != 0) bWritten = false;
    if (!bWritten) {
        Complain("cannot write " + file + ": " + Reason());
        return kFailed;
    }
    std::cout << "wrote " << file << "; now try\n"
              << "  mlds test " << file << '\n'
              << "  mlds run " << file << " --text \"chakula kizuri\"\n";
    return FlushOutput() ? kDone : kFailed;
}

}  // namespace mlds_program
