// The tiers of this host: which streams there are, and what the names of each tell about a token.
#include "tiers.h"

#include <span>

#include "latin1.h"
#include "letters.h"
#include "require.h"
#include "schema.h"

namespace transcribe {

namespace {

constexpr const char* kPauses = ". , : ; ? ! ¡ ¿";

void DeclareRawInput(CStream* pRaw) {
    AddField(pRaw, "name", fvChar);
    AddFeatures(
        pRaw, "class",
        {{"letter", "A..Z a..z À..Ö Ø..ö ø..ÿ"}, {"digit", "0..9"}, {"pause", kPauses}, kRest});
    AddFeatures(pRaw, "case", {{"upper", "A..Z À..Ö Ø..Þ"}, {"lower", "a..z ß..ö ø..ÿ"}, kRest});
}

std::string Letters(std::span<const LetterGroup> groups) {
    std::string letters;
    for (const LetterGroup& group : groups) {
        for (const char32_t letter : group.letters) {
            letters += ToUtf8(std::string(1, static_cast<char>(letter))) + ' ';
        }
    }
    return letters;
}

void DeclareInp(CStream* pInp) {
    const std::string vowels = Letters(kVowelLetters);
    const std::string letters = vowels + Letters(kConsonantLetters);
    AddField(pInp, "name", fvEnum, letters + "0 1 2 3 4 5 6 7 8 9 " + kPauses);
    AddFeatures(pInp, "class", {{"letter", letters}, {"digit", "0..9"}, {"pause", kPauses}});
    AddYesNo(pInp, "vowel", vowels);
    AddYesNo(pInp, "accent", "á é í ó ú");
    // What rules ask of a letter's neighbours.
    AddYesNo(pInp, "front", "e è é ê ë i ì í î ï");
    AddFeatures(pInp, "height",
                {{"open", "a à á â ã å æ e è é ê ë o ò ó ô õ ö ø"},
                 {"i", "i ì í î ï"},
                 {"u", "u ù ú û ü"},
                 kRest});
    AddFeatures(pInp, "plosive", {{"b", "b v"}, {"d", "d"}, {"g", "g"}, kRest});
    AddYesNo(pInp, "nasal", "m n ñ");
    AddYesNo(pInp, "trilling", "n l s");  // r sounds as rr behind these
    AddYesNo(pInp, "labial", "b p v");
    AddYesNo(pInp, "velar", "g j k q");
}

void DeclareWord(CStream* pWord) {
    AddField(pWord, "name", fvEnum, "word number");
    AddField(pWord, "length", fvInt);
    AddField(pWord, "capital", fvEnum, "no yes");
}

// The phones of Castilian Spanish in SAMPA, manner by manner.
void DeclarePhone(CStream* pPhone) {
    AddField(pPhone, "name", fvEnum,
             "a e i o u j w p b t d k g tS f T s x jj B D G m n J N l L r rr");
    AddYesNo(pPhone, "vowel", "a..u");
    AddField(pPhone, "stress", fvInt);
    AddFeatures(pPhone, "manner",
                {{"vocalic", "a..u"},
                 {"glide", "j w"},
                 {"plosive", "p..g"},
                 {"affricate", "tS"},
                 {"fricative", "f..jj"},
                 {"approximant", "B..G"},
                 {"nasal", "m..N"},
                 {"lateral", "l L"},
                 {"tap", "r"},
                 {"trill", "rr"}});
    AddFeatures(pPhone, "place",
                {{"labial", "p b B m"},
                 {"labiodental", "f"},
                 {"dental", "t d D T"},
                 {"alveolar", "s n l r rr"},
                 {"palatal", "j tS jj J L"},
                 {"velar", "w k g G x N"},
                 kRest});
    AddYesNo(pPhone, "voiced", "a..w b d g jj..rr");
    AddFeatures(pPhone, "height", {{"high", "i u"}, {"mid", "e o"}, {"low", "a"}, kRest});
    AddYesNo(pPhone, "front", "i e");
    AddYesNo(pPhone, "back", "u o");
}

void DeclareSyl(CStream* pSyl) {
    AddField(pSyl, "name", fvEnum, "syl");
    AddField(pSyl, "stress", fvInt);
}

}  // namespace

Tiers::Tiers()
    : plexa(nullptr),
      pRaw(Add("RawInput")),
      pInp(Add("inp")),
      pWord(Add("word")),
      pPhone(Add("phone")),
      pSyl(Add("syl")),
      pTime(Add("time")) {
    DeclareRawInput(pRaw);
    DeclareInp(pInp);
    DeclareWord(pWord);
    DeclarePhone(pPhone);
    DeclareSyl(pSyl);
    AddField(pTime, "name", fvInt);
    plexa.SetDefaultTimeStream(pTime);
    plexa.Initialize();
}

CStream* Tiers::Add(const char* name) {
    CStream* pStream = plexa.pStream(plexa.AddStream(name));
    Require(pStream != nullptr, "AddStream");
    return pStream;
}

}  // namespace transcribe
