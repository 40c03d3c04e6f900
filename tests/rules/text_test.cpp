// Text read into letters: folding, expansions, what is unknown, and texts of any bytes.
#include "text/textreader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <random>
#include <sstream>

using namespace mlds::rules;

namespace {

using testing::ElementsAre;

/// A language with one tier from text; letters stand between blanks.
Model Language(const std::string& language, const std::string& letters) {
    Model model;
    model.language = language;
    model.tiers.resize(2);
    model.tiers[0].name = "text";
    model.tiers[0].kind = Tier::Kind::text;
    Tier& tier = model.tiers[1];
    tier.name = "letters";
    tier.kind = Tier::Kind::fromText;
    std::istringstream words(letters);
    for (std::string word; words >> word;) tier.tokens.push_back(word);
    model.text.tier = 1;
    return model;
}

Model Spanish() {
    Model model = Language("es",
                           "a á b c ch d e é f g h i í j k l m n ñ o ó p q r s t u ú ü v w x y z "
                           ". , 0 1 2 3 4 5 6 7 8 9");
    model.text.reads = {{"…", "...", {}}, {"œ", "oe", {}}};
    model.text.standsFor = {{"à", "a", {}}, {"ß", "s s", {}}};
    model.text.ignored = {"-", "«"};
    model.text.joined = {"\u00AD"};
    return model;
}

/// Segments as "letters|letters": "_" is a place inside one, "" a segment that is one.
std::string Letters(const Model& model, const ReadText& read) {
    std::string text;
    int end = 0;
    for (const ReadText::Segment& segment : read.segments) {
        EXPECT_EQ(segment.begin, end) << "segments cover all characters";
        EXPECT_LT(segment.begin, segment.end);
        end = segment.end;
        if (&segment != read.segments.data()) text += "|";
        for (const int letter : segment.letters) {
            text += letter == ReadText::kPlace
                        ? "_"
                        : model.tiers[1].tokens[static_cast<std::size_t>(letter)];
        }
    }
    EXPECT_EQ(end, static_cast<int>(read.characters.size()));
    return text;
}

std::string Read(const Model& model, std::string_view text, Unknown unknown = Unknown::skip) {
    return Letters(model, TextReader(model).Read(text, unknown));
}

std::vector<std::string> Faults(const Model& model, std::string_view text,
                                Unknown unknown = Unknown::skip) {
    std::vector<std::string> faults;
    for (const TextFault& fault : TextReader(model).Read(text, unknown).faults) {
        faults.push_back(std::to_string(fault.column) + ": " + fault.what);
    }
    return faults;
}

double Seconds(const std::function<void()>& work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

}  // namespace

TEST(TextReader, FoldsCharactersToLetters) {
    const Model model = Spanish();
    EXPECT_EQ(Read(model, "Ñandú"), "ñ|a|n|d|ú");
    EXPECT_EQ(Read(model, "n\u0303 N\u0303"), "ñ||ñ") << "typed with combining accents";
    EXPECT_EQ(Read(model, "CHico"), "ch|i|c|o") << "one letter of two characters";
    EXPECT_EQ(Read(model, "Àß"), "a|ss");
    EXPECT_EQ(Read(model, "a…b"), "a|...|b");
    EXPECT_EQ(Read(model, "a…\u0303b", Unknown::keep), "a||b") << "not half a character";
    EXPECT_EQ(Read(model, "Œ"), "oe") << "a reading holds for capitals too";
    EXPECT_EQ(Read(model, "a-b«c"), "a||b||c");
    EXPECT_EQ(Read(model, "a\tb\u200Bc\u00A0d"), "a||b||c||d");
    EXPECT_EQ(Read(model, ""), "");
}

TEST(TextReader, JoinedCharactersBelongToTheLetterBefore) {
    const Model model = Spanish();
    EXPECT_EQ(Read(model, "a\u00ADb"), "a|b");
    EXPECT_EQ(Read(model, "\u00AD\u00ADa"), "a");
    EXPECT_EQ(Read(model, "\u00AD"), "") << "one empty place";
    const ReadText read = TextReader(model).Read("a\u00ADb", Unknown::skip);
    EXPECT_EQ(read.segments[0].end, 2);
    EXPECT_EQ(read.characters.size(), 3u);
}

TEST(TextReader, CaseIsThatOfTheLanguage) {
    EXPECT_EQ(Read(Language("tr", "ı i s"), "IİI\u0307"), "ı|i|i");
    EXPECT_EQ(Read(Language("de", "ß s"), "ẞß"), "ß|ß");
    EXPECT_EQ(Read(Language("el", "ο δ σ ς"), "ΟΔΟΣ"), "ο|δ|ο|σ") << "no final sigma is made";
    EXPECT_EQ(Read(Language("es", "i"), "I"), "i");
    Model kept = Language("es", "a A");
    kept.text.bCaseKept = true;
    EXPECT_EQ(Read(kept, "aA"), "a|A");
}

TEST(TextReader, KnowsAllScripts) {
    EXPECT_EQ(Read(Language("ru", "м и р й"), "Мир Й"), "м|и|р||й");
    EXPECT_EQ(Read(Language("ar", "س ل ا م"), "سلام"), "س|ل|ا|م");
    // A consonant and its vowel sign are one character as typed, and two letters.
    const Model hindi = Language("hi", "ह न द क्ष \u093F \u0940 \u094D");
    EXPECT_EQ(Read(hindi, "हिन्दी"), "ह\u093F|न\u094D|द\u0940");
    EXPECT_EQ(Read(hindi, "क्षि"), "क्ष\u093F") << "two characters, one letter and a sign";
    EXPECT_EQ(TextReader(hindi).Read("हिन्दी", Unknown::skip).characters.size(), 3u);
}

TEST(TextReader, TellsWhatIsUnknown) {
    const Model model = Spanish();
    EXPECT_EQ(Read(model, "aжb"), "a|b");
    EXPECT_EQ(Read(model, "aжb", Unknown::error), "a|b");
    EXPECT_EQ(Read(model, "aжb", Unknown::keep), "a||b");
    EXPECT_EQ(Read(model, "жb"), "b");
    EXPECT_THAT(Faults(model, "n\u0303ж"),
                ElementsAre("2: 'ж' (U+0436) is no letter of this language"))
        << "columns are those of characters as typed";
    EXPECT_THAT(Faults(model, "m\u0303"),
                ElementsAre("1: 'm\u0303' (U+006D U+0303) is no letter of this language"))
        << "an accent is not dropped";
    Model quiet = model;
    quiet.text.bIgnoreOther = true;
    EXPECT_EQ(Read(quiet, "aжb"), "a||b");
    EXPECT_THAT(Faults(quiet, "aжb"), ElementsAre());
}

TEST(TextReader, TellsBytesThatAreNoUtf8) {
    Model model = Spanish();
    model.text.bIgnoreOther = true;
    EXPECT_THAT(Faults(model,
                       "a\xE9"
                       "b\xC3"),
                ElementsAre("2: the byte 0xE9 is no UTF-8", "4: the byte 0xC3 is no UTF-8"));
    EXPECT_EQ(Read(model,
                   "a\xE9"
                   "b"),
              "a|b");
    EXPECT_EQ(Read(model,
                   "a\xE9"
                   "b",
                   Unknown::keep),
              "a||b");
    EXPECT_THAT(Faults(Spanish(), "ж\xE9"),
                ElementsAre(testing::StartsWith("1: 'ж'"), testing::StartsWith("2: the byte")));
    EXPECT_THAT(Faults(model, "\uFFFD"), ElementsAre()) << "typed, and ignored like others";
}

TEST(TextReader, RemembersWhatWasTyped) {
    const Model model = Spanish();
    TextReader reader(model);
    const ReadText read = reader.Read("n\u0303m\u0303m\u0303", Unknown::skip);
    ASSERT_EQ(read.characters.size(), 3u);
    EXPECT_EQ(read.characters[0].code, 0xF1);
    EXPECT_GT(read.characters[1].code, 0x10FFFF);
    EXPECT_EQ(read.characters[1].code, read.characters[2].code);
    EXPECT_EQ(reader.CharacterOf(read.characters[0].code), "ñ");
    EXPECT_EQ(reader.CharacterOf(read.characters[1].code), "m\u0303");
    EXPECT_EQ(reader.Letters("CHé ж"), (TokenKey{4, 7, 0xFFFF, 0xFFFF}));
}

TEST(Expansions, LiteralsStandAlone) {
    Model model = Spanish();
    model.text.expansions = {{"Sr.", true, "señor", false, {}},
                             {"km", true, "quilo metro", false, {}},
                             {"km/h", true, "lento", false, {}}};
    EXPECT_EQ(Read(model, "Sr. a"), "_señor_||a");
    EXPECT_EQ(Read(model, "sr."), "s|r|.") << "as written";
    EXPECT_EQ(Read(model, "km KM Km"), "_quilo_metro_||_quilo_metro_||_quilo_metro_");
    EXPECT_EQ(Read(model, "kma"), "k|m|a");
    EXPECT_EQ(Read(model, "akm"), "a|k|m");
    EXPECT_EQ(Read(model, "km/h"), "_lento_") << "the longest";
    EXPECT_EQ(Read(model, "km\u0303"), "k") << "not half a character";
}

TEST(Expansions, NumbersAreSpeltOut) {
    Model model = Spanish();
    model.text.expansions = {
        {"[0-9]+([.][0-9]{3})*([,][0-9]+)?", false, "", true, {}},
        {"1[.]?º", false, "primero", false, {}},
        {"[0-9]+[.][0-9]+[.][0-9]+", false, "", true, {}},
    };
    const auto said = [&](std::string_view text) { return Read(model, text); };
    EXPECT_EQ(said("21"), "_veintiuno_");
    EXPECT_EQ(said("12.345,6"), "_doce_mil_trescientos_cuarenta_y_cinco_coma_seis_");
    EXPECT_EQ(said("3,50"), "_tres_coma_cinco_cero_");
    EXPECT_EQ(said("007"), "_cero_cero_siete_");
    EXPECT_EQ(said("a 2."), "a||_dos_|.");
    EXPECT_EQ(said("1º 1.º"), "_primero_||_primero_") << "the longest at a place";
    EXPECT_EQ(said("1.2345"), "_uno_|.|_dos_mil_trescientos_cuarenta_y_cinco_")
        << "no number ends inside a run of digits";
    EXPECT_EQ(said("1.2.3"), "_uno_._dos_._tres_") << "no number: its digits and the rest";
    EXPECT_EQ(said("1" + std::string(30, '0')).substr(0, 15), "_uno_cero_cero_");
    model.text.expansions[0].pattern = "[0-9]+( [0-9]{3})*";
    EXPECT_EQ(said("12 345"), "_doce_mil_trescientos_cuarenta_y_cinco_") << "the international way";
}

TEST(Expansions, OtherLanguagesHaveOtherNumbers) {
    Model model = Language("en", "a b c d e f g h i j k l m n o p q r s t u v w x y z");
    model.text.expansions = {{"-?[0-9][0-9.,]*", false, "", true, {}}};
    EXPECT_EQ(Read(model, "22"), "_twenty_two_");
    EXPECT_EQ(Read(model, "1,234.5"), "_one_thousand_two_hundred_thirty_four_point_five_");
    EXPECT_EQ(Read(model, "-22"), "_minus_twenty_two_");
    EXPECT_EQ(Read(model, "12,34,567").substr(0, 13), "_one_million_") << "as India groups";
    EXPECT_THAT(Faults(model, "-22"), ElementsAre());
    EXPECT_EQ(Read(model, "1.2."), "_one_two_");
    EXPECT_THAT(Faults(model, "1.2."), testing::SizeIs(2))
        << "what is typed is not lost in silence";
    model.language = "fr";
    EXPECT_EQ(Read(model, "12 345"), "_douze_||_trois_cent_quarante_cinq_");
    model.text.expansions[0].pattern = "[0-9]+( [0-9]{3})*";
    EXPECT_EQ(Read(model, "12 345"), "_douze_mille_trois_cent_quarante_cinq_");
    model.language = "de";
    EXPECT_EQ(Read(model, "21"), "_einundzwanzig_") << "no soft hyphens of ICU's";
    EXPECT_THAT(Faults(model, "5"),
                ElementsAre("1: 'ü' (U+00FC) in what this is read as is no letter of this "
                            "language"));
}

TEST(Expansions, GoOnBehindEachOther) {
    Model model = Spanish();
    model.text.expansions = {{"ab-", true, "x", false, {}}, {"[-0-9]+", false, "y", false, {}}};
    EXPECT_EQ(Read(model, "ab-12 -12"), "_x_|_y_||_y_") << "the rest of a match is looked at again";
    EXPECT_EQ(Read(model, "12ab-"), "_y_|a|b|_y_") << "a digit before the literal";
    EXPECT_EQ(Read(model, "5\u0303 5"), "|_y_") << "a digit with an accent is none";
}

TEST(Expansions, ExpressionsThatNeverEndAreStopped) {
    Model model = Spanish();
    model.text.expansions = {{"(a+)+b", false, "x", false, {}}};
    const std::string text(40, 'a');
    EXPECT_THAT(Faults(model, text), testing::SizeIs(1));
    EXPECT_EQ(Read(model, text).size(), 79u) << "the letters are read all the same";
}

TEST(TextReader, IsLinear) {
    Model model = Spanish();
    model.text.expansions = {{"[0-9]+([.][0-9]{3})*([,][0-9]+)?", false, "", true, {}},
                             {"Sr.", true, "señor", false, {}}};
    const auto repeated = [](std::string_view part) {
        std::string text;
        while (text.size() < 1'000'000) text += part;
        return text;
    };
    // Digits, marks in falling order, beginnings of letters and expansions, bad bytes.
    for (const char* pPart : {"el niño camión, 12.345 veces. ", "1", "1 2.", "\u0301\u0327", "c",
                              "S", "न्\u093F", "\xE9", "ж"}) {
        TextReader reader(model);
        const std::string text = repeated(pPart);
        ReadText read;
        EXPECT_LT(Seconds([&] { read = reader.Read(text, Unknown::keep); }), 15) << pPart;
        Letters(model, read);
    }
}

TEST(TextReader, TakesAnyBytes) {
    Model model = Spanish();
    model.text.expansions = {{"[^a]b+", false, "", true, {}}, {"\x80", true, "a", false, {}}};
    TextReader reader(model);
    std::mt19937 random(7);
    const std::string likely = "abchS. 19\u0303\u0301\u00AD…";
    for (int i = 0; i < 3000; ++i) {
        std::string text(random() % 40, '\0');
        for (char& c : text) {
            c = random() % 2 != 0 ? likely[random() % likely.size()] : static_cast<char>(random());
        }
        Letters(model, reader.Read(text, Unknown(random() % 3)));
        reader.Letters(text);
    }
}
