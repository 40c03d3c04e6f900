// Deletion of marks, of stretches, and of tokens by name.
#include "container/calls.h"

using namespace mlds_test;

namespace {

TEST(Deletion, OfOneMarkKeepsTokensApart) {
    ExpectAfter({{"a", "||a||"}, {"p"}}, "",
                {"||o|||l|| a.1=p.3: Mark p.2 -> 1 ||o||l|| a.1=p.2",
                 "||o|||l|| a.1=p.2: Mark p.1 -> 1 ||o||l|| a.1=p.1",
                 "||o|||l|| a.1=p.3: Mark a.1 -> 1 ||o||l||", "||o|l||: Mark p.1 -> 0",
                 "||o|l||: Mark a.0 -> 0", "||||: Mark p.start -> 0", "||||: Mark a.end -> 0",
                 "||||: Mark p.0 -> 1 |||", "|||: Mark p.0 -> 1 ||"});
}

TEST(Deletion, OfAStretch) {
    ExpectAfter(
        {{"a", "||a|b|c|d||"}, {"p"}}, "||o|l|a|| a.0=p.0 a.1=p.1 a.2=p.2 a.3=p.3: Items ",
        {"p.1 a.2 3 -> 1 ||o||a|| a.0=p.0 a.1=p.1 a.2=p.2 a.3=p.3",
         "a.1 a.2 9 -> 1 ||o||a|| a.0=p.0 a.1=p.1 a.2=p.2 a.3=p.3",
         "a.1 p.2 1 -> 1 ||o|a|| a.0=p.0 a.2=p.1 a.3=p.2",
         "p.1 p.2 2 -> 1 ||o|a|| a.0=p.0 a.1=p.1 a.3=p.2", "a.1 a.2 0 -> 1 ||oa|| a.0=p.0 a.3=p.1",
         "a.1 a.1 2 -> 1 ||ol|a|| a.0=p.0 a.2=p.1 a.3=p.2",
         // The outermost marks stay, whatever goes between them.
         "a.0 a.2 0 -> 1 ||a|| a.0=p.0 a.3=p.1", "a.1 a.3 0 -> 1 ||o|| a.0=p.0 a.3=p.1",
         "a.start a.end 0 -> 1 ||", "a.0 a.0 0 -> 0", "a.3 a.3 1 -> 0", "a.1 p.1 3 -> 0",
         "a.2 a.1 3 -> 0", "a.4 a.2 3 -> 0"},
        {.bTokensApart = false});
}

TEST(Deletion, OfTokensByName) {
    ExpectAfter({{"a", "||a||"}, {"p"}}, "||o|l|o|a|| a.1=p.2: Strip ",
                {"p.0 p.4 o -> 1 ||l|a||", "p.0 p.4 p[0] -> 1 ||l|a||",  // the pattern goes first
                 "p.0 p.4 p[2] -> 1 ||l|a||", "p.1 p.4 p[0] -> 1 ||o|l|a||",
                 "p.0 a.1 o -> 1 ||l|o|a|| a.1=p.1", "p.0 p.0 o -> 1", "p.0 p.4 x -> 1",
                 "p.0 p.4 a -> 1 ||o|l|o|| a.1=p.2", "p.0 null o -> 1",
                 "p.start p.end l -> 1 ||o|o|a|| a.1=p.1"});
}

}  // namespace
