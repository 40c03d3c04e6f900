// What is said of rules that make no sense, before any text is seen.
#include <gtest/gtest.h>

#include "language.h"

namespace mlds_test {
namespace {

// The first message, from its kind on; empty if there is none. Lines count from the block's head.
std::string FirstMessage(const std::string& block) {
    std::string text = Messages(kPrelude + kLetters + block);
    const std::string covered = "warning: no rule covers";
    if (text.find(covered) != std::string::npos) {
        text.erase(0, text.find("within word first\n") + 18);
        text.erase(0, text.find('\n') + 1);
    }
    // An error, or else a warning.
    const std::size_t error = text.find("error: ");
    const std::size_t kind = error != std::string::npos ? error : text.find("warning: ");
    return kind == std::string::npos ? "" : text.substr(kind, text.find('\n', kind) - kind);
}

struct Fault {
    const char* block;
    const char* message;
};

void CheckFaults(std::initializer_list<Fault> faults) {
    for (const Fault& fault : faults) {
        EXPECT_EQ(FirstMessage(fault.block), fault.message) << fault.block;
    }
}

TEST(RuleChecks, NamesAreKnown) {
    CheckFaults({
        {"block x : phone each\n  [vok] -> a",
         "error: no feature, value or token 'vok' in tier phone; did you mean 'voc'?"},
        {"block x : phone each\n  a -> Ts",
         "error: tier phone has no token 'Ts'; did you mean 'ts'?"},
        {"block x : phon each\n  a -> e", "error: there is no tier 'phon'; did you mean 'phone'?"},
        {"block x : letters -> phone\n  að -> a",
         "error: tier letters has no token 'að', nor one for its end 'ð'"},
        {"block x : phone each\n  [stress] -> a",
         "error: 'stress' is a number; ask for its value: [stress=1], [stress!=0]"},
        {"block x : phone each\n  [manner=glid] -> a", "error: 'manner' has no value 'glid'"},
        {"block x : phone each\n  [voc<yes] -> a",
         "error: only numbers are more or less than others, and 'voc' is none"},
        {"block x : phone each\n  a := [tone=1]",
         "error: tier phone has no feature or field 'tone'"},
        {"block x : phone each\n  a -> $y",
         "error: nothing before this captures a token as 'y'; "
         "write x:[...] to capture one"},
        {"class A = a\nblock x : phone each\n  A e -> a", ""},
        {"class A = a e\nblock x : phone each\n  A e -> a",
         "error: a class is one token, whatever it matches; what is longer or may be empty is a "
         "'pattern'"},
        {"pattern A = B\npattern B = A\nblock x : phone each\n  A -> a",
         "error: patterns stand in each other without end, or more than 20 deep"},
        {"class a = e\nblock x : phone each\n  e -> a",
         "error: 'a' is a token of tier letters; a class or pattern needs a name of its own"},
    });
}

TEST(RuleChecks, RulesMakeSense) {
    CheckFaults({
        {"block x : phone within word each\n  a -> e / _ # s",
         "error: nothing can match beyond '#': block x stays within word (line 23)"},
        {"block x : phone within word each\n  a -> e / s # _",
         "error: nothing can match beyond '#': block x stays within word (line 23)"},
        {"block x : phone each\n  a -> e / _ #",
         "error: the edge of what? This block is not 'within' "
         "a tier; write #word"},
        {"block x : phone each\n  a #s -> e",
         "error: there is no tier 's'; for the edge and then the "
         "token write '# s', with a blank"},
        {"block x : phone each\n  (a?)+ -> e", "error: what is repeated can match nothing: (a?)+"},
        {"block x : phone each\n  a* -> e",
         "error: this can match nothing, so it would hold "
         "everywhere: a*; to insert, write 0 -> ... / ... _ ..."},
        {"block x : phone each\n  0 -> e",
         "error: an insertion needs an environment that says where: "
         "0 -> ... / ... _ ..."},
        {"block x : phone each\n  0 -> e / a? _ s",
         "error: what stands next to '_' on the left may be a token or nothing; write two rules"},
        {"block x : letters -> phone each\n  0 -> e / a _",
         "error: only a block of one tier inserts; this one goes from letters to phone"},
        {"block x : phone each\n  a -> e / x:a =x _",
         "error: 'x' is not bound yet here: left of '_' tokens are matched from right to left, so "
         "what is captured stands right of its use"},
        {"block x : phone each\n  a -> $x / x:s _ | _ s",
         "error: '$x' is not captured wherever the rule holds; capture it in the focus, or in "
         "every "
         "environment behind '/'"},
        {"block x : phone first leftward\n  a -> e",
         "error: 'leftward' goes with 'each': in a 'first' block the rules follow one another "
         "along "
         "the text"},
        {"block x : letters -> phone\n  a := [+voc]",
         "error: this changes what is there, and a block with '->' fills another tier; put it into "
         "a "
         "block of one tier"},
    });
}

TEST(RuleChecks, WarnsOfWhatIsHardlyMeant) {
    CheckFaults({
        {"block x : phone each\n  [a e] -> i",
         "warning: no token of tier phone can be all of this; a comma or blank means 'and', '|' "
         "means "
         "'or'"},
        {"block x : letters -> phone first\n  a -> e\n  a b -> i / _ c\n  . -> 0",
         "warning: this rule never holds: line 24 takes every 'a', without an environment"},
        {"block x : phone first\n  a b -> e\n  c -> i\n  a b -> i / _ c",
         "warning: this rule never holds: line 24 takes what it looks for, without an environment"},
        // A feature that rules set says nothing about a name any more.
        {"block x : phone first\n  [voc] -> e\n  a -> i\nblock y : phone each\n  a := [-voc]", ""},
        {"class V = a|e", "warning: 'V' is used nowhere, and has not been checked"},
    });
    const std::string text =
        Messages(kPrelude + "block x : letters -> phone first\n  [vowel] -> a\n");
    EXPECT_NE(text.find("warning: no rule covers 'b', 'c', 'd', 'f', 'g', 'h', 'k', 'l' and 9 more "
                        "where the others fail"),
              std::string::npos)
        << text;
}

TEST(RuleChecks, TiersAndFields) {
    const auto first = [](const std::string& text) {
        const std::string messages = Messages(text);
        const std::size_t kind = messages.find("error: ");
        return kind == std::string::npos ? messages
                                         : messages.substr(kind, messages.find('\n', kind) - kind);
    };
    EXPECT_EQ(first("tier a : b b\n"), "error: tier a has 'b' twice");
    EXPECT_EQ(first("tier a : b\ntier a : c\n"), "error: there is a tier 'a' already, in line 1");
    EXPECT_EQ(first("tier a : b\n  feature b = b\n"),
              "error: tier a has a feature, value or token 'b' already");
    EXPECT_EQ(first("tier a : b c\n  feature f : x = b | y = b c\n"),
              "error: 'b' has the value 'x' already; a token has one value of a feature");
    EXPECT_EQ(first("tier a spans b\n"), "error: there is no tier 'b'");
    EXPECT_EQ(first("tier a : bbbbbbbbbbbbbbbbbbbb\n"),
              "error: a token's name has at most 19 bytes: bbbbbbbbbbbbbbbbbbbb");
    std::string values = "tier a : b c\n  feature f : v0 = b";
    for (int i = 1; i < 30; ++i) values += " | v" + std::to_string(i) + " = c";
    EXPECT_NE(first(values).find("c' has the value"), std::string::npos);
    EXPECT_EQ(first("assert \"a\" => b\ntier t : a\n"), "error: tier t has no token 'b'");
}

}  // namespace
}  // namespace mlds_test
