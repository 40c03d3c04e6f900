// Unicode's composed form, in which all texts are compared.
#include <unicode/normalizer2.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <stdexcept>

#include "codepoints.h"
#include "text/textreader.h"

namespace mlds::rules {

std::string Composed(std::string_view utf8, std::size_t* pFaultAt) {
    if (pFaultAt != nullptr) *pFaultAt = std::string_view::npos;
    const auto IsAscii = [](char c) { return static_cast<unsigned char>(c) < 0x80; };
    // ASCII is composed: nearly every word of a rule file is done here.
    if (std::all_of(utf8.begin(), utf8.end(), IsAscii)) return std::string(utf8);

    icu::UnicodeString text;
    for (std::size_t at = 0; at < utf8.size();) {
        const CodePoint c = CodePointAt(utf8, at);
        if (!c.bValid && pFaultAt != nullptr && *pFaultAt == std::string_view::npos) *pFaultAt = at;
        text.append(static_cast<UChar32>(c.value));
        at = c.next;
    }
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* pNormalizer = icu::Normalizer2::getNFCInstance(status);
    if (U_FAILURE(status)) throw std::runtime_error("ICU has no data to compose letters with");
    const icu::UnicodeString composed = pNormalizer->normalize(text, status);
    if (U_FAILURE(status)) throw std::runtime_error("ICU cannot compose a text");
    std::string result;
    composed.toUTF8String(result);
    return result;
}

}  // namespace mlds::rules
