// Numbers as text, the way the library's users know them from their C run-time.
#ifndef MLDS_PLATFORM_NUMBERTEXT_H
#define MLDS_PLATFORM_NUMBERTEXT_H

#include <cstdint>

namespace mlds::platform {

enum class Scan {
    number,    // a number was read
    noNumber,  // the text does not begin with a number
    endOfText  // there was nothing but white space
};

/// Reads a decimal integer after white space and a sign; what follows is ignored. Wraps at 32
/// bits. `value` is only written when a number was read.
Scan ScanInt(const char* text, std::int32_t& value);

/// The integer at the start of the text, or 0.
std::int32_t TextToInt(const char* text);

/// Reads what scanf's %f reads, with a '.' whatever the host's locale. False, and `value` as it
/// was, if the text does not begin with a number.
bool ScanFloat(const char* text, float& value);
/// The same for %lf.
bool ScanDouble(const char* text, double& value);

/// Writes an integer-valued number with at most `digits` significant digits and a trailing point,
/// rounding halves away from zero: 7. or -3. or 1.235e+004. `buffer` must hold digits + 9
/// characters and is returned.
char* _gcvt(double value, int digits, char* buffer);

}  // namespace mlds::platform

#endif
