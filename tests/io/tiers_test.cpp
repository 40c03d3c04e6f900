// What a person sees of tiers: aligned text, lines of tokens, how wide characters are.
#include <gmock/gmock.h>

#include <sstream>

#include "mlds/io/aligned.h"
#include "mlds/io/view.h"
#include "mlds/io/width.h"
#include "support/tiers.h"

namespace {

using mlds::io::Interval;
using mlds::io::TokenLine;
using mlds::io::View;
using mlds::io::ViewOf;
using mlds_test::Tiers;

std::string Aligned(const View& view, std::size_t width = 100) {
    std::ostringstream out;
    mlds::io::PrintAligned(view, out, width);
    return out.str();
}

TEST(Width, CombiningWideAndFaultyCharacters) {
    EXPECT_EQ(mlds::io::Columns("año"), 3u);
    EXPECT_EQ(mlds::io::Columns("e\u0301"), 1u);
    EXPECT_EQ(mlds::io::Columns("日本"), 4u);
    EXPECT_EQ(mlds::io::Columns("\u1112\u1161\u11ab"), 2u);  // one block of Hangul
    EXPECT_EQ(mlds::io::Columns("\u200d\u202e"), 0u);
    EXPECT_EQ(mlds::io::Columns("\xFF\xC3"), 2u);
    EXPECT_EQ(mlds::io::Cleaned("a\tb\n\x7F\xFF\u0085"), "a␉b␊␡\uFFFD\uFFFD");
}

TEST(Width, CutsBetweenColumns) {
    EXPECT_EQ(mlds::io::CutColumns("abc", 1, 2), "b");
    EXPECT_EQ(mlds::io::CutColumns("e\u0301a", 0, 1), "e\u0301");
    EXPECT_EQ(mlds::io::CutColumns("e\u0301a", 1, 9), "a");
    EXPECT_EQ(mlds::io::CutColumns("日本", 1, 3), "  ");
    EXPECT_EQ(mlds::io::CutColumns("日本", 2, 4), "本");
    EXPECT_EQ(mlds::io::CutColumns("ab", 2, 4), "");
}

struct Hola {
    Tiers tiers{{"text", "||h|o|l|a| |y||"},
                {"word", "||hola||y||", {"hola", "y"}},
                {"phone", "|||o|l|a||i||", {"o", "l", "a", "i"}}};
    Hola() {
        tiers.TieAll(
            "text.0=word.0=phone.0 text.1=phone.1 text.2=phone.2 text.3=phone.3 "
            "text.4=word.1=phone.4 text.5=word.2=phone.5 text.6=word.3=phone.6");
    }
};

TEST(Aligned, SynchronousMarksStandInOneColumn) {
    Hola hola;
    EXPECT_EQ(Aligned(ViewOf(hola.tiers.plexa)),
              "text     |h|o|l|a| |y|\n"
              "word     |hola   | |y|\n"
              "phone    | |o|l|a| |i|\n");
}

TEST(Aligned, LabelsAreMeasuredInColumns) {
    Hola hola;
    View view = ViewOf(hola.tiers.plexa);
    view.lanes[1].name = "ほんの言葉";
    view.lanes[2].label = [](const Interval& interval) {
        const std::string name = interval.pToken->GetNameField();
        return name == "o" ? "日" : name == "l" ? "l\u0301\u0323" : "'" + name;
    };
    EXPECT_EQ(Aligned(view),
              "text       |h|o |l|a | |y |\n"
              "ほんの言葉 |hola     | |y |\n"
              "phone      | |日|l\u0301\u0323|'a| |'i|\n");
}

TEST(Aligned, LongTextsAreCutBehindBlanks) {
    Hola hola;
    View view = ViewOf(hola.tiers.plexa);
    view.lanes[0].bText = true;
    EXPECT_EQ(Aligned(view, 21),
              "text     |h|o|l|a| |\n"
              "word     |hola   | |\n"
              "phone    | |o|l|a| |\n"
              "\n"
              "text     |y|\n"
              "word     |y|\n"
              "phone    |i|\n");
    // Where there is no blank, between characters, and never without getting on.
    EXPECT_THAT(Aligned(view, 14), testing::StartsWith("text     |h|o|\n"
                                                       "word     |hol\n"
                                                       "phone    | |o|\n"
                                                       "\n"
                                                       "text     |l|a|\n"
                                                       "word     a   |\n"));
    EXPECT_THAT(Aligned(view, 0), testing::EndsWith("text     |y|\nword     |y|\nphone    |i|\n"));
}

TEST(Aligned, EmptyUntiedTouchingAndCrossedTiers) {
    Tiers tiers{{"a", "||"}, {"b", "|||"}, {"c", "||xy|z||"}, {"d", "||p|q|r||"}};
    EXPECT_EQ(Aligned(ViewOf(tiers.plexa)),
              "a\n"
              "b\n"
              "c        |xy|z|\n"
              "d        |p|q|r|\n");
    tiers.TieAll("c.1=d.2 c.2=d.1");  // what is right of each other is left of each other
    EXPECT_THAT(Aligned(ViewOf(tiers.plexa)), testing::HasSubstr("|xy|z|\nd        |p"));
    EXPECT_THAT(Aligned(ViewOf(tiers.plexa)), testing::ContainsRegex("p +[|]q[|]r[|]"));
    View none{tiers.plexa, {}, nullptr};
    EXPECT_EQ(Aligned(none), "");
}

TEST(TokenLine, GroupsAreDivided) {
    Hola hola;
    const View view = ViewOf(hola.tiers.plexa);
    EXPECT_EQ(TokenLine(view.lanes[2], hola.tiers["word"]), "o l a  i");
    EXPECT_EQ(TokenLine(view.lanes[2], hola.tiers["word"], {"", " "}), "ola i");
    EXPECT_EQ(TokenLine(view.lanes[2], nullptr), "o l a i");
    mlds_test::Fill(hola.tiers["phone"], "||");
    EXPECT_EQ(TokenLine(view.lanes[2], hola.tiers["word"]), "");
}

}  // namespace
