// Numbers to and from text, independent of the host's locale and run-time.
#include "platform/numbertext.h"

#include <locale.h>

#include <cmath>
#include <cstdio>

namespace mlds::platform {

namespace {

bool IsSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

}  // namespace

// Digits beyond 32 bits wrap, as they always did; nothing here may overflow a signed number.
Scan ScanInt(const char* text, std::int32_t& value) {
    while (IsSpace(*text)) ++text;
    if (*text == '\0') return Scan::endOfText;
    const bool bNegative = *text == '-';
    if (*text == '-' || *text == '+') ++text;
    if (!IsDigit(*text)) return Scan::noNumber;
    std::uint32_t n = 0;
    for (; IsDigit(*text); ++text) n = n * 10 + static_cast<std::uint32_t>(*text - '0');
    value = static_cast<std::int32_t>(bNegative ? 0 - n : n);
    return Scan::number;
}

std::int32_t TextToInt(const char* text) {
    std::int32_t value = 0;
    ScanInt(text, value);
    return value;
}

namespace {

#if defined(_WIN32)

// A host that has chosen a locale with a decimal comma must not change what rules mean.
template <typename T>
bool ScanOne(const char* text, const char* format, T& value) {
    static const _locale_t c = _create_locale(LC_ALL, "C");
    return _sscanf_l(text, format, c, &value) == 1;
}

#else

// A host that has chosen a locale with a decimal comma must not change what rules mean. Only this
// thread's locale is changed, and only for the call.
template <typename T>
bool ScanOne(const char* text, const char* format, T& value) {
    static const locale_t c = newlocale(LC_ALL_MASK, "C", nullptr);
    const locale_t old = uselocale(c);
    const int nRead = std::sscanf(text, format, &value);
    uselocale(old);
    return nRead == 1;
}

#endif

}  // namespace

bool ScanFloat(const char* text, float& value) {
    return ScanOne(text, "%f", value);
}

bool ScanDouble(const char* text, double& value) {
    return ScanOne(text, "%lf", value);
}

// The run-time's own shape, which no printf format gives: a point behind whole numbers, three
// digits of exponent, ties away from zero. Scaling divides by exact powers of ten, so that a tie is
// still one when it is rounded.
char* _gcvt(double value, int digits, char* buffer) {
    char* p = buffer;
    if (std::signbit(value) && value != 0) *p++ = '-';
    double rest = std::fabs(value);
    int exponent = 0;
    double scale = 1;
    while (rest / scale >= 10) {
        scale *= 10;
        ++exponent;
    }
    const double limit = std::pow(10.0, digits);
    if (exponent < digits) {
        std::snprintf(p, static_cast<std::size_t>(digits) + 2, "%.0f.", rest);
        return buffer;
    }
    double mantissa = std::floor(rest / (scale / (limit / 10)) + 0.5);
    if (mantissa >= limit) {
        mantissa /= 10;
        ++exponent;
    }
    char text[32];
    std::snprintf(text, sizeof text, "%.0f", mantissa);
    int nKept = digits;
    while (nKept > 1 && text[nKept - 1] == '0') --nKept;
    std::snprintf(p, static_cast<std::size_t>(digits) + 8, "%c.%.*se+%03d", text[0], nKept - 1,
                  text + 1, exponent);
    return buffer;
}

}  // namespace mlds::platform
