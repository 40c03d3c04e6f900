// The letters that words are written with, and what each of them sounds like by itself.
#ifndef TRANSCRIBE_LETTERS_H
#define TRANSCRIBE_LETTERS_H

#include <string_view>

namespace transcribe {

/// Lower case letters that sound alike, and their phones in the notation that fills a stream; an
/// empty text for letters that are not heard.
struct LetterGroup {
    std::u32string_view letters;
    const char* phones;
};

// Together all lower case letters of Latin-1. Those of other languages sound like the nearest
// Spanish ones.
inline constexpr LetterGroup kVowelLetters[] = {
    {U"aàâãäå", "a"},
    {U"á", "<'a' stress:1>"},
    {U"æ", "a e"},
    {U"eèêë", "e"},
    {U"é", "<'e' stress:1>"},
    {U"iìîïýÿ", "i"},
    {U"í", "<'i' stress:1>"},
    {U"oòôõöø", "o"},
    {U"ó", "<'o' stress:1>"},
    {U"uùû", "u"},
    {U"ú", "<'u' stress:1>"},
    {U"ü", "w"},
};
inline constexpr LetterGroup kConsonantLetters[] = {
    {U"bv", "b"}, {U"ckq", "k"}, {U"dð", "d"},   {U"f", "f"},   {U"g", "g"},
    {U"h", ""},   {U"j", "x"},   {U"l", "l"},    {U"m", "m"},   {U"n", "n"},
    {U"ñ", "J"},  {U"p", "p"},   {U"r", "r"},    {U"sçß", "s"}, {U"t", "t"},
    {U"w", "w"},  {U"x", "k s"}, {U"y", "'jj'"}, {U"zþ", "T"},
};

/// The phones of a letter in Latin-1; an empty text for any other character.
const char* PhonesOf(char letter);

}  // namespace transcribe

#endif
