// What looks right in a test and is not: the warnings, and that they are true.
#include <gmock/gmock.h>

#include "mlds/testasm/plexaschema.h"
#include "mlds/testasm/testasm.h"
#include "names.h"
#include "support/tiers.h"

namespace {

using namespace mlds_testasm;
using mlds_testasm_test::Names;
using testing::HasSubstr;

// What is said of a test that takes a c, or what `focus` is, with more instructions.
std::string SaidOf(const std::string& more, const std::string& focus = "c: AngleBrkt isc then T") {
    const std::string text = "test t %inp\nfocus f\n" + more +
                             "\nf: Adj at c then T\nat: Ptr ^c\nisc: Eq %inp.name 'c'\nT: Or\n" +
                             focus + "\nend";
    std::string said;
    for (const Diagnostic& diagnostic :
         Assembler(Names()).Assemble(text, "t").diagnostics().all()) {
        // Instructions that a case has no use for are left standing.
        if (!diagnostic.message.starts_with("nothing in test")) said += diagnostic.Text() + "\n";
    }
    return said;
}

TEST(TestTraps, AContextPassesTheFocusFirst) {
    const char* const qu = "c: AngleBrkt isc then u\nu: NameEq %inp.name 'u' then T";
    const char* const capture = "c: AngleBrkt then cap\ncap: AssignTok $seen then T";
    const char* const marked = "c: AngleBrkt then m\nm: AssignPtr ^c then T";
    struct {
        const char* context;
        const char* focus;
        int line;  // of the warning; 0 for none
    } cases[] = {
        {"l: Eq %inp.open 'yes'", nullptr, 4},
        {"l: AngleBrkt o then T\no: Eq %inp.open 'yes'", nullptr, 4},
        {"l: Not n then T\nn: Eq %inp.open 'yes'", nullptr, 5},
        {"l: SyncTest %phone", nullptr, 4},
        {"l: Or s n\ns: AngleBrkt n then T\nn: Gt %inp.n 1", nullptr, 5},
        {"l: Adj x y then T\ny: AngleBrkt _ then T\nx: Eq %inp.open 'yes'", nullptr, 0},
        {"l: Adj y x then T\ny: AngleBrkt _ then T\nx: Eq %inp.open 'yes'", nullptr, 6},
        {"l: AngleBrkt _ then o\no: Eq %inp.open 'yes'", nullptr, 0},
        {"l: AngleBrkt _ then e\ne: SyncTest %phone", nullptr, 0},
        {"l: Stars any then o\nany: AngleBrkt _ then T\no: Eq %inp.open 'yes'", nullptr, 0},
        {"l: LeftContext %phone T", nullptr, 0},
        // The focus by its name, and what the focus has named.
        {"l: AngleBrkt again then o\nagain: Eq %inp.name 'c'\no: Eq %inp.open 'yes'", nullptr, 0},
        {"l: Tok $seen %inp.name then T", capture, 0},
        {"l: Tok $seen %inp.name then T", nullptr, 4},
        // Nobody finds the beginning of the focus at its end, unless the mark was moved there.
        {"l: Ptr ^c", nullptr, 4},
        {"l: ParentPtr ^c then T", nullptr, 4},
        {"l: Ptr ^c", marked, 0},
        // As many as the focus takes.
        {"l: AngleBrkt _ then o\no: Eq %inp.open 'yes'", qu, 5},
        {"l: AngleBrkt _ then m\nm: AngleBrkt _ then o\no: Eq %inp.open 'yes'", qu, 0},
        {"l: Eq %inp.open 'yes'", "c: And isc", 0},
        {"l: Eq %inp.open 'yes'", "c: Qmarks isc then T", 0},
        {"l: Eq %inp.open 'yes'", "c: Plexa %phone any then T\nany: AngleBrkt _ then T", 0},
    };
    for (const auto& [context, focus, line] : cases) {
        const std::string more = std::string("left l\n") + context;
        const std::string said = focus == nullptr ? SaidOf(more) : SaidOf(more, focus);
        const std::string begin =
            "t:" + std::to_string(line) + ":4: warning: expected a test of what is left of";
        EXPECT_EQ(said.substr(0, begin.size()), line == 0 ? "" : begin) << context;
    }
    EXPECT_THAT(SaidOf("left l\nl: AngleBrkt _ then o\no: Eq %inp.open 'yes'", qu),
                HasSubstr("step over its 2 tokens first, by 'AngleBrkt then ...' for each, not "
                          "over 1 only"));
    // To the left it is the other side.
    const std::string leftward =
        "test t %inp\nfocus f\nleft x\nright x\nf: Anchor s leftward\ns: Adj c at then T\n"
        "at: Ptr ^c\nc: AngleBrkt _ then T\nT: Or\nx: Eq %inp.open 'yes'\nend";
    EXPECT_THAT(Assembler(Names()).Assemble(leftward, "t").diagnostics().Text(),
                HasSubstr("right context begins at the focus's left end"));
    EXPECT_EQ(SaidOf("right r\nr: Eq %inp.open 'yes'"), "");
}

TEST(TestTraps, OtherPatternsAreReportedWhereTheyStand) {
    struct {
        const char* pattern;
        const char* warning;  // empty for none
    } cases[] = {
        {"LeftContext %phone w\nw: Eq %phone.vowel 'yes'", "t:4:23: warning: expected a pattern "},
        {"RightContext %phone w\nw: AngleBrkt isc then T", "t:4:24: warning: expected a pattern "},
        {"LeftContext %phone w\nw: Or isc at", "t:4:23: warning: expected a pattern that tests"},
        {"And w T\nw: LeftContext %phone v\nv: Not isc then T", "t:5:23: warning: expected a p"},
        {"LeftContext %phone T", ""},
        {"LeftContext %phone w\nw: Or isc T", ""},
        {"LeftContext %phone w\nw: Qmarks v then T\nv: AngleBrkt isc then T", ""},
        {"RightContext %phone w\nw: AngleBrkt _ then v\nv: AssignPtr ^end then T", ""},
        {"Adj h e\nh: Qmarks v\nv: AngleBrkt _ then T\ne: Eq %inp.open 'yes'",
         "t:4:8: warning: expected an element that does not end the sequence: where 'h: Qmarks'"},
        {"Adj v e\nv: AngleBrkt\ne: Eq %inp.open 'yes'", "t:4:8: warning: expected an element"},
        {"Adj T h then e\nh: Or isc q\nq: Qmark T\ne: Eq %inp.open 'yes'", "t:4:10: warning: exp"},
        {"Adj h e\nh: Adj T T\ne: Eq %inp.open 'yes'", "t:4:8: warning: expected an element"},
        {"Adj h e\nh: Qmarks v then T\nv: AngleBrkt _ then T\ne: Eq %inp.open 'yes'", ""},
        {"Adj at e\ne: AngleBrkt", ""},
        {"Adj h e\nh: Not v then T\nv: Qmarks isc\ne: AngleBrkt v", ""},
        {"NameEq %inp.name %inp.name", "t:4:11: warning: expected one Field at most: these two"},
        {"Eq %inp.n %inp.n", "t:4:7: warning: expected one Field at most"},
        {"Le %inp.n %inp.n", "t:4:7: warning: expected one Field at most"},
        {"AngleBrkt e then T\ne: NotEq %inp.n %inp.n", "t:5:10: warning: expected one Field"},
        {"AngleBrkt e then T\ne: Or T w\nw: Eq %inp.n %inp.n", ""},
        {"And e v\nv: AngleBrkt _ then T\ne: Eq %inp.n %inp.n", ""},
        {"Lt %inp.n %inp.n", ""},
        {"NameEq %inp.n 2", ""},
    };
    for (const auto& [pattern, warning] : cases) {
        const std::string said = SaidOf(std::string("right r\nr: ") + pattern);
        const std::string begin = warning;
        EXPECT_EQ(begin.empty() ? said : said.substr(0, begin.size()), begin) << pattern;
    }
}

// The marks of "||c|e|c|a||" at which a test of the letter c holds, with this behind the c.
std::string Held(const std::string& behind) {
    mlds_test::Tiers t{{"inp", "||c|e|c|a||"}};
    CSyncMark* pAt = nullptr;
    CSyncMark* pEnd = nullptr;
    CVarList variables(&t.plexa);
    variables.AddSyncMarkPtr("at", &pAt);
    variables.AddSyncMarkPtr("end", &pEnd);
    const std::string text = "test t %inp\nfocus f\n" + behind +
                             "\nf: Adj at c\nat: Ptr ^at\nc: AngleBrkt isc then T\n"
                             "isc: Eq %inp.name 'c'\nise: Eq %inp.name 'e'\nT: Or\nend";
    const Assembly test = Assembler(SchemaOf(t.plexa, &variables)).Assemble(text, "t");
    if (!test.ok()) return test.diagnostics().Text();
    std::string held;
    for (int k = 0; k < 5; ++k) {
        pAt = t.Mark("inp", k);
        held += t.plexa.Test("t", test.instructions(), 0) ? '1' : '0';
    }
    return held;
}

TEST(TestTraps, WhatIsWarnedOfHappens) {
    // Behind an e: the c itself is no e.
    EXPECT_EQ(Held("left ise"), "00000");
    EXPECT_EQ(Held("left l\nl: AngleBrkt _ then ise"), "00100");
    EXPECT_EQ(Held("left l\nl: Ptr ^at"), "00000");
    // Before any token and an e: the e is not looked at.
    EXPECT_EQ(Held("right r\nr: Adj x e\nx: AngleBrkt\ne: AngleBrkt ise"), "10100");
    EXPECT_EQ(Held("right r\nr: Adj x e\nx: Qmarks y then T\ny: AngleBrkt isc then T\n"
                   "e: AngleBrkt ise"),
              "10000");
    EXPECT_EQ(Held("right r\nr: RightContext %inp ise"), "10100");
    // The a is the last token: behind it two are missing.
    EXPECT_EQ(Held("right r\nr: AngleBrkt then s\ns: NameEq %inp.name %inp.name"), "00100");
    EXPECT_EQ(Held("right r\nr: AngleBrkt then s\ns: AngleBrkt s2\ns2: Eq %inp.name %inp.name"),
              "00000");
}

}  // namespace
