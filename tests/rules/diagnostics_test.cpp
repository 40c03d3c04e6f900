// Messages: their order, their pictures, the names they propose.
#include "mlds/rules/diagnostics.h"

#include <gmock/gmock.h>

#include "text/textreader.h"

namespace mlds::rules {

TEST(Diagnostics, AreSortedOnceEachAndCut) {
    Sources sources;
    sources.Add("a.mlr", "one\n\ttwo \u4E2D\u4E2D\n");
    sources.Add("b.mlr", "three");
    Diagnostics diagnostics;
    diagnostics.Error(sources, {1, 1, 6, 1}, "later file");
    diagnostics.Warning(sources, {0, 2, 6, 2}, "wide");
    diagnostics.Error(sources, {0, 1, 1, 3}, "first");
    diagnostics.Error(sources, {0, 1, 1, 3}, "second");
    diagnostics.Error(sources, {0, 1, 1, 3}, "first");
    diagnostics.Add({"a.lex", {0, 7, 2, 1}, Severity::error, "no source", "x\x1B[2J"});
    EXPECT_EQ(diagnostics.errors(), 5);
    EXPECT_EQ(diagnostics.all().size(), 5U);
    EXPECT_EQ(diagnostics.Text(4),
              "a.mlr:1:1: error: first\none\n^~~\na.mlr:1:1: error: second\none\n^~~\n"
              "a.mlr:2:6: warning: wide\n\ttwo \u4E2D\u4E2D\n\t    ^~~~\n"
              "a.lex:7:2: error: no source\nx\uFFFD[2J\n ^\nand 1 more\n");
}

TEST(Diagnostics, NoPlaceAndLongLines) {
    EXPECT_EQ((Diagnostic{"a", {}, Severity::error, "gone", ""}.Text()), "a: error: gone");
    const std::string line = std::string(500, 'x') + 'Y' + std::string(500, 'x');
    const std::string text = Diagnostic{"a", {0, 1, 501, 900}, Severity::error, "m", line}.Text();
    EXPECT_EQ(text, "a:1:501: error: m\n..." + std::string(100, 'x') + 'Y' + std::string(119, 'x') +
                        "...\n" + std::string(103, ' ') + '^' + std::string(119, '~'));
}

TEST(Diagnostics, NearNamesAreProposed) {
    const std::vector<std::string> names = {"front", "fronted", "tS", "ds", "\u00E1rbol", "nasal"};
    EXPECT_EQ(DidYouMean("frnt", names), "; did you mean 'front'?");
    EXPECT_EQ(DidYouMean("FRONTED", names), "; did you mean 'fronted'?");
    EXPECT_EQ(DidYouMean("ts", names), "; did you mean 'tS'?");
    EXPECT_EQ(DidYouMean("\u00C1rbl", names), "; did you mean '\u00E1rbol'?");
    EXPECT_EQ(DidYouMean("nsaal", names), "; did you mean 'nasal'?");
    for (const char* pFar : {"", "x", "is", "fr", "banana", "front"}) {
        EXPECT_EQ(DidYouMean(pFar, {"front", "tS", "ds", "nasal"}), "") << pFar;
    }
    EXPECT_EQ(DidYouMean(std::string(1'000'000, 'a'), {std::string(1'000'000, 'b')}), "");
}

TEST(Diagnostics, TextsAreComposed) {
    std::size_t at = 0;
    EXPECT_EQ(Composed("man\u0303ana", &at), "ma\u00F1ana");
    EXPECT_EQ(at, std::string::npos);
    EXPECT_EQ(Composed("a\xC3z\xFF", &at), "a\uFFFDz\uFFFD");
    EXPECT_EQ(at, 1U);
}

}  // namespace mlds::rules
