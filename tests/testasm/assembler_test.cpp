// Rule tests as text, as a graph and as bytes.
#include <gmock/gmock.h>

#include <cstring>
#include <fstream>
#include <sstream>

#include "mlds/testasm/plexaschema.h"
#include "mlds/testasm/testasm.h"
#include "mlds/testasm/text.h"
#include "names.h"
#include "support/tiers.h"

namespace {

using namespace mlds_testasm;
using mlds_testasm_test::Names;
using testing::HasSubstr;

std::string Manual() {
    std::ifstream file(MLDS_DOCS "/testasm.md", std::ios::binary);
    return (std::stringstream() << file.rdbuf()).str();
}

// What stands in the manual between ```KIND and ```.
std::string Block(const std::string& manual, const std::string& kind) {
    const std::size_t begin = manual.find("```" + kind + "\n") + kind.size() + 4;
    return manual.substr(begin, manual.find("```", begin) - begin);
}

TEST(TestAssembler, TheManualIsRight) {
    const std::string manual = Manual();
    const Assembly assembly = Assembler().Assemble(Block(manual, "mta"), "manual");
    EXPECT_EQ(assembly.diagnostics().Text(), "");
    EXPECT_EQ(Listing(assembly), Block(manual, "listing"));
    EXPECT_THAT(manual, HasSubstr(OpcodeTable()));
}

TEST(TestAssembler, AnAssembledTestRuns) {
    mlds_test::Tiers t{{"inp", "||c|e|c|a||"}};
    CSyncMark* pAt = nullptr;
    CSyncMark* pEnd = nullptr;
    CVarList variables(&t.plexa);
    variables.AddSyncMarkPtr("at", &pAt);
    variables.AddSyncMarkPtr("end", &pEnd);
    std::string text = Block(Manual(), "mta");
    text.erase(0, text.find("test "));
    const Assembly rules = Assembler(SchemaOf(t.plexa, &variables)).Assemble(text, "rules");
    ASSERT_TRUE(rules.ok()) << rules.diagnostics().Text();
    const int base = rules.base("c_before_e_or_i");
    EXPECT_EQ(rules.base("c"), -1);
    EXPECT_EQ(rules.info(base + 4).label + rules.info(base + 4).text,
              "is_cEq %inp.name %inp.name:'c'");
    EXPECT_EQ(rules.info(base + 4).place.line, 7);
    std::string held;
    for (int k = 0; k < 5; ++k) {
        pAt = t.Mark("inp", k);
        held += t.plexa.Test("c", rules.instructions(), base) ? '1' : '0';
    }
    EXPECT_EQ(held, "10000");
    EXPECT_EQ(mlds_test::Where(pEnd), "inp.1");
    EXPECT_THAT(WriteSchema(SchemaOf(t.plexa, &variables)), HasSubstr("variable ^at ^end\n"));
}

TEST(TestAssembler, ASchemaIsWrittenAsItWasRead) {
    const std::string text = R"(stream inp
field name enum a '\xe9' '\'' '07' tS enum
field n int
stream 'a b'
field type3 type3
field front enum yes no
set yes 'not so'
variable ^at $seen ^'1'
)";
    Diagnostics diagnostics("names");
    const Schema schema = ReadSchema(text, diagnostics);
    EXPECT_EQ(diagnostics.Text(), "");
    EXPECT_EQ(WriteSchema(schema), text);
    // A value that looks like a number stays as it is written.
    const Schema bare = ReadSchema("stream inp\nfield name enum 07 -0", diagnostics);
    EXPECT_EQ(bare.streams.at(0).fields.at(0).values, (std::vector<std::string>{"07", "-0"}));
}

TEST(TestAssembler, OperandsBecomeBytes) {
    struct {
        const char* source;
        const char* rows;  // as in listings
    } cases[] = {
        {"Anchor p leftward norecord", "03 02 01 01 00"},
        {"Anchor p norecord 7 direction 9", "03 02 09 07 00"},
        {"Or _ p", "04 00 00 02 00"},
        {"Star p then p limit ^end", "08 00 02 05 02|33 00 04 ff 00  ParentPtr ^end"},
        {"Plexa %phone p then p", "01 04 00 02 02|18 00 00 00 01  Stream %phone"},
        {"MoveRight _ p", "2a 00 00 02 00"},
        {"Tok $seen %phone.vowel then p", "21 02 01 00 02"},
        {"Tok $seen", "21 02 ff 00 00"},
        {"AssignTok $seen then p", "24 00 00 02 02"},
        {"ParentPtr $seen %phone.vowel", "33 00 04 01 00|16 00 00 00 02  ConstInt $seen"},
        {"Eq %phone.vowel 'no'", "1a 00 04 05 00|02 00 00 00 01  Enum %phone.vowel:'no'"},
        {"Eq '\\xe9' %inp.name", "1a 00 05 04 00|02 ff ff ff e9  Enum %inp.name:'\\xe9'"},
        {"Lt %inp.n -2", "1c 00 04 05 00|16 ff ff ff fe  ConstInt -2"},
        {"Eq %inp.open 'yes'", "1a 00 04 05 00|02 00 00 00 01  Enum %inp.open:'yes'"},
        {"Eq 'no' %inp.open", "1a 00 05 04 00|02 00 00 00 00  Enum %inp.open:'no'"},
        {"Eq %inp.open 2", "1a 00 04 05 00|16 00 00 00 02  ConstInt 2"},
        {"Eq %inp.f '0.5'", "1a 00 04 05 00|02 3f 00 00 00"},
        {"Eq %phone.name:tS 2", "1a 00 04 05 00|02 00 00 00 02  Enum %phone.name:'tS'"},
    };
    for (const auto& [source, rows] : cases) {
        const std::string text =
            std::string("test t %inp\nfocus p\nright x\nx: ") + source + "\np: Ptr ^c\nend";
        const Assembly assembly = Assembler(Names()).Assemble(text, "t");
        std::istringstream wanted(rows);
        for (std::string row; std::getline(wanted, row, '|');) {
            EXPECT_THAT(Listing(assembly), HasSubstr("  " + row)) << assembly.diagnostics().Text();
        }
    }
}

TEST(TestAssembler, ErrorsSayWhereAndWhatWasExpected) {
    // Line 3 is the instruction x.
    struct {
        const char* source;
        const char* error;
    } cases[] = {
        {"Foo", "3:4: error: expected an instruction, found Foo"},
        {"Not then p", "3:8: error: expected a pattern, found none (Not pattern [then pattern])"},
        {"Not k", "3:8: error: expected a pattern, found ConstInt 4"},
        {"Eq p 1", "3:7: error: expected a value, found Ptr ^c"},
        {"Not z", "3:8: error: expected a label of this test, found z"},
        {"Not p limit ^c", "3:10: error: expected Not pattern [then pattern], found limit"},
        {"Tok ^c", "3:8: error: expected a token variable ($name), found ^c"},
        {"Tok 0", "3:8: error: expected a token variable (Tok"},
        {"Ptr ^seen", "3:8: error: expected a mark variable that is declared, found ^seen"},
        {"Ptr 9", "3:8: error: expected a variable, not number 9"},
        {"SyncTest %in", "3:13: error: expected a stream that is declared, found %in"},
        {"SyncTest k", "3:13: error: expected a stream that is declared, not number 4"},
        {"Eq %inp.x 1", "3:12: error: expected a field of stream inp, found x"},
        {"Eq %inp.name 'ch'", "3:17: error: expected one character"},
        {"Eq %inp.open 'maybe'", "3:17: error: expected yes or no"},
        {"Eq %inp.f 'x'", "3:14: error: expected a number"},
        {"Eq %phone.name 'zz'", "3:19: error: expected a value or set of the field"},
        {"Eq %phone.both 'y'", "3:19: error: expected a number, as this is value 1 and set 0"},
        {"Eq 1 'c'", "3:9: error: expected %stream.field:value"},
        {"Star p limit q\nq: ParentPtr $seen", "3:17: error: expected a mark variable"},
        {"Star p limit p", "3:17: error: expected an instruction with a constant"},
        {"Div 1 0", "3:10: error: expected a divisor that is not 0"},
        {"StarsNoBkup p then p", "3:16: error: expected a pattern that moves"},
        {"Stars p then p", "3:10: warning: expected a pattern that moves"},
        {"Star q then p\nq: Qmark p then x", "3:4: warning: the test can come back here"},
        {"Raw 54 0 0 0 0", "3:4: error: expected an instruction, as this is executed"},
        {"Not 'p", "3:8: error: expected a closing quote"},
        {"AngleBrkt\nx: AngleBrkt", "4:1: error: expected a new label, as line 3 has this one"},
        {"AngleBrkt\nend\ntest t %inp", "5:1: error: expected a new name"},
        {"test t\nend", "1:7: error: expected a stream, found none (test 't')"},
        {"test t %inp\nend", "1:1: error: expected a focus, found none (test 't')"},
        {"test t %inp\nfocus p\np: Ptr ^c", "4:1: error: expected 'end' of test 't'"},
    };
    for (const auto& [source, error] : cases) {
        std::string text = source;
        if (!text.starts_with("test ")) {
            text = "test t %inp\nfocus p\nx: " + text + "\np: Ptr ^c\nk: ConstInt 4\nright x\nend";
        }
        const Assembly assembly = Assembler(Names()).Assemble(text, "t");
        EXPECT_THAT(assembly.diagnostics().Text(), HasSubstr(std::string("t:") + error)) << source;
        EXPECT_EQ(assembly.ok(), assembly.size() > 0);
    }
    // One line is enough where every name is unknown.
    const std::string two = "test t %inp\nfocus p\np: Ptr ^c\nend\ntest u %inp\nfocus q\nend";
    EXPECT_EQ(
        Assembler().Assemble(two, "t").diagnostics().Text(),
        "t:1:8: error: expected declarations of streams, in a schema (--schema) or before the "
        "first test, found %inp\n");
    EXPECT_EQ(Assembler().Assemble("stream inp\n" + two, "t").diagnostics().Text(),
              "t:4:8: error: expected declarations of variables, in a schema (--schema) or before "
              "the first test, found ^c\n");
    // Without declared names, a variable's number must fit into its bytes. A focus needs a Ptr.
    const auto said = [](const std::string& x) {
        const std::string text = "stream s\ntest t %s\nfocus x\nx: " + x + "\nend";
        return Assembler().Assemble(text, "t").diagnostics().Text();
    };
    for (const char* x :
         {"ParentPtr 255", "ParentPtr 65535", "Adj a b\na: Ptr 2147483647\nb: Tok 255",
          "Adj a b\na: Ptr 1\nb: AssignTok 65535"}) {
        EXPECT_EQ(said(x), "") << x;
    }
    for (const char* x :
         {"Tok 256", "Tok -1", "AssignTok 65536", "ParentPtr 65536", "AssignPtr 65536"}) {
        EXPECT_THAT(said(x), HasSubstr("t:4:")) << x;
        EXPECT_THAT(said(x), HasSubstr(" error: expected a")) << x;
    }
    for (const char* x : {"Tok 255", "AngleBrkt"}) {
        EXPECT_THAT(said(x), HasSubstr("t:3:7: warning: expected a Ptr in the focus")) << x;
    }
    std::string longest = "test t %inp\nfocus p\np: Ptr ^c\n";
    for (int i = 0; i < 253; ++i) longest += "AngleBrkt\n";
    EXPECT_EQ(Assembler(Names()).Assemble(longest + "end", "t").size(), 256);
    EXPECT_THAT(Assembler(Names()).Assemble(longest + "Tok 2\nend", "t").diagnostics().Text(),
                HasSubstr("t:1:1: error: expected at most 256 instructions"));
}

// What is said of a test whose context, on that side, is the pattern x. The pattern p stays where
// it is and t does nothing, a moves.
std::string SaidOf(const std::string& side, const std::string& x) {
    const std::string text =
        "test t %inp\nfocus p\nx: " + x + "\np: Ptr ^c\na: AngleBrkt _ then t\nt: Or\n" +
        "v: Add 1 w\nw: Negate %inp.n\n" + side + " x\n" +
        // All is used somewhere.
        (side == "right" ? "left" : "right") + " u\nu: AngleBrkt r then a\nr: Gt v w\nend";
    return Assembler(Names()).Assemble(text, "t").diagnostics().Text();
}

TEST(TestAssembler, OnlyPatternsThatMoveAreRepeated) {
    const std::vector<std::string> stay = {"Ptr ^c",
                                           "Tok $seen",
                                           "Eq %inp.n 1",
                                           "Anchor p",
                                           "Or p a",
                                           "Or a p",
                                           "Or a _",
                                           "And a p",
                                           "Adj p p",
                                           "Adj p _ then p",
                                           "Plexa %phone p",
                                           "Plexa %phone p then p",
                                           "NotEq 1 2",
                                           "Lt 1 2",
                                           "Le 1 2",
                                           "Gt 1 2",
                                           "Ge 1 2",
                                           "NameEq 1 1",
                                           "ParentPtr ^c",
                                           "ParentPtr ^c then p",
                                           "Not a",
                                           "Star a",
                                           "Stars a",
                                           "Stars a then p",
                                           "StarsNoBkup a then p",
                                           "Qmark a",
                                           "Qmarks a",
                                           "AssignPtr ^c",
                                           "AssignTok $seen",
                                           "SyncTest %phone"};
    const std::vector<std::string> move = {"AngleBrkt",
                                           "AngleBrkt p then p",
                                           "AdjacencyTest",
                                           "Tok $seen then p",
                                           "Anchor a",
                                           "Or a a",
                                           "Or _ a",
                                           "And p a",
                                           "Adj a p",
                                           "Adj p a",
                                           "Adj p p then a",
                                           "Plexa %phone a",
                                           "Plexa %phone p then a",
                                           "NotEq %inp.n 2",
                                           "Lt 1 %inp.n",
                                           "Le v 2",
                                           "Gt 2 v",
                                           "Ge %inp.n 2",
                                           "NameEq v 1",
                                           "NameEq 1 1 then a",
                                           "ParentPtr $seen",
                                           "ParentPtr ^c then a",
                                           "Not a then a",
                                           "Star a then a",
                                           "Stars a then a",
                                           "StarsNoBkup a then a",
                                           "Qmark a then a",
                                           "Qmarks a then a",
                                           "AssignPtr ^c then a",
                                           "AssignTok $seen then a",
                                           "SyncTest %phone then a",
                                           "MoveRight _ p",
                                           "TimeMoveLeft p",
                                           "RightContext %phone t"};
    const auto expect = [](const char* side, const std::string& pattern, bool bStays) {
        const std::string stars = SaidOf(side, "Stars q then p\nq: " + pattern);
        const std::string noBackup = SaidOf(side, "StarsNoBkup q then p\nq: " + pattern);
        const char* const warning = "t:3:10: warning: expected a pattern that moves";
        EXPECT_EQ(bStays ? stars.substr(0, std::strlen(warning)) : stars, bStays ? warning : "")
            << side << ' ' << pattern;
        EXPECT_EQ(noBackup.find("t:3:16: error: expected a pattern that moves"),
                  bStays ? 0 : std::string::npos)
            << side << ' ' << pattern;
    };
    for (const std::string& pattern : stay) expect("right", pattern, true);
    for (const std::string& pattern : move) expect("right", pattern, false);
    // To the left the second operand comes first.
    for (const char* pattern : {"Or _ a", "And p a"}) expect("left", pattern, true);
    for (const char* pattern : {"Or a _", "And a p", "Adj a p"}) expect("left", pattern, false);
    const std::string focus =
        "test t %inp\nfocus f\nf: Anchor x leftward\nx: Stars q then p\n"
        "p: Ptr ^c\na: AngleBrkt\nq: ";
    const auto said = [&](const char* pattern) {
        return Assembler(Names()).Assemble(focus + pattern + "\nend", "t").diagnostics().Text();
    };
    EXPECT_THAT(said("And p a"), HasSubstr("t:4:10: warning"));
    EXPECT_EQ(said("And a p"), "");
}

TEST(TestAssembler, CirclesMustMove) {
    const char* const still[] = {
        "Star a then x",     "Not p then x",        "AngleBrkt x",
        "Adj p x",           "Adj p p then x",      "Plexa %phone p then x",
        "NameEq 1 1 then x", "ParentPtr ^c then x", "AssignPtr ^c then x",
        "Anchor x",          "Stars q\nq: Or a x",  "Or a q\nq: And x a"};
    const char* const moving[] = {"Adj a x",
                                  "Adj p a then x",
                                  "Plexa %phone a then x",
                                  "Stars a then x",
                                  "AngleBrkt _ then x",
                                  "NameEq v 1 then x",
                                  "ParentPtr $seen then x",
                                  "Tok $seen then x",
                                  "AdjacencyTest then x",
                                  "Star q then p\nq: AngleBrkt _ then x",
                                  "Or q q\nq: Not p then p"};
    for (const char* pattern : still) {
        EXPECT_THAT(SaidOf("right", pattern), HasSubstr("the test can come back here")) << pattern;
    }
    for (const char* pattern : moving) EXPECT_EQ(SaidOf("right", pattern), "") << pattern;
    EXPECT_THAT(SaidOf("right", "Adj x a"), HasSubstr("t:3:4: warning: the test can come back"));
    EXPECT_EQ(SaidOf("left", "Adj x a"), "");
}

TEST(TestAssembler, WhatAMessageQuotesIsShort) {
    const std::string word(100'000, 'w');
    const std::string test = "test t %inp\nfocus p\np: ";
    for (const std::string& text :
         {word, "test t %" + word + "\nend", "test " + word, "test " + word + "\nend",
          "test t %inp\nfocus " + word + "\nend", test + word + "\nend",
          test + "Ptr ^" + word + "\nend", test + "Eq %inp.name '" + word + "'\nend",
          test + "Eq 1 '" + word + "'\nend", test + "Not q\nq: ParentPtr ^c %" + word + "\nend"}) {
        const Assembly assembly = Assembler(Names()).Assemble(text, "t");
        EXPECT_GT(assembly.diagnostics().errors(), 0) << text.substr(0, 80);
        for (const auto& diagnostic : assembly.diagnostics().all()) {
            EXPECT_LT(diagnostic.Text().size(), 200U) << diagnostic.Text().substr(0, 200);
        }
    }
}

}  // namespace
