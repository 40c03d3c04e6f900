// Results of the library that must not be a refusal.
#ifndef TRANSCRIBE_REQUIRE_H
#define TRANSCRIBE_REQUIRE_H

#include <stdexcept>
#include <string>

namespace transcribe {

/// Throws if an operation of the library was refused: this program is then wrong, or memory ran
/// out.
inline void Require(bool bDone, const char* operation) {
    if (!bDone) throw std::runtime_error(std::string(operation) + " was refused");
}

}  // namespace transcribe

#endif
