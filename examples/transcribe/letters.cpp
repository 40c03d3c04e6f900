// What a letter sounds like by itself.
#include "letters.h"

#include <span>

namespace transcribe {

namespace {

const char* Find(std::span<const LetterGroup> groups, char letter) {
    const char32_t code = static_cast<unsigned char>(letter);
    for (const LetterGroup& group : groups) {
        if (group.letters.find(code) != std::u32string_view::npos) return group.phones;
    }
    return nullptr;
}

}  // namespace

const char* PhonesOf(char letter) {
    const char* phones = Find(kVowelLetters, letter);
    if (phones == nullptr) phones = Find(kConsonantLetters, letter);
    return phones != nullptr ? phones : "";
}

}  // namespace transcribe
