// Numbers, fields, comparisons, and tokens under a condition.
#include <climits>

#include "rules.h"

namespace {

using mlds_test::Rules;
using ValuesTest = Rules;

TEST_F(ValuesTest, ArithmeticWrapsAndDivisionTruncates) {
    const auto is = [&](int value, int expected) { return Eq(value, Int(expected)); };
    Check({{"inp.0", is(Negate(Int(5)), -5), "inp.0"},
           {"inp.0", is(Negate(Int(INT_MIN)), INT_MIN), "inp.0"},
           {"inp.0", is(Mult(Int(65536), Int(65537)), 65536), "inp.0"},
           {"inp.0", is(Mult(Int(-3), Int(7)), -21), "inp.0"},
           {"inp.0", is(Add(Int(INT_MAX), Int(1)), INT_MIN), "inp.0"},
           {"inp.0", is(Div(Int(-7), Int(2)), -3), "inp.0"},
           {"inp.0", is(Add(Int(1, 2), Int(1, 24)), 2), "inp.0"},  // three names of a constant
           // Most significant byte first.
           {"inp.0", is(Op(22, 1, 2, 3, 4), ((1 * 256 + 2) * 256 + 3) * 256 + 4), "inp.0"},
           // A number as a pattern: its low byte is the truth.
           {"inp.0", Int(256), "no"},
           {"inp.0", Int(2), "inp.0"}});
}

TEST_F(ValuesTest, FieldMovesOverTheTokenThatItReads) {
    Check({{"inp.1", NotEq(Field(), Int(0)), "inp.2"},
           {"inp.1<", NotEq(Field(), Int('o')), "inp.0"},
           {"phone.1", NotEq(Field(), Int('o')), "phone.3"},
           {"inp.4", NotEq(Field(), Int(0)), "inp.4"},
           {"inp.0", Eq(Field(9), Int(-1)), "inp.0"}});
}

TEST_F(ValuesTest, EqLooksAheadAndTheOtherComparisonsConsume) {
    struct {
        int opcode;
        const char* toLower;  // compared with a value lower than the field's
        const char* toSame;
        const char* toHigher;
        int failing;
    } const cases[] = {{26, "no", "inp.0", "no", 'i'}, {27, "inp.1", "no", "inp.1", 'h'},
                       {28, "no", "no", "inp.1", 'h'}, {29, "no", "inp.1", "inp.1", 'g'},
                       {30, "inp.1", "no", "no", 'h'}, {31, "inp.1", "inp.1", "no", 'i'}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.opcode);
        EXPECT_EQ(From("inp.0", Op(c.opcode, 0, Field(), Int('g'))), c.toLower);
        EXPECT_EQ(From("inp.0", Op(c.opcode, 0, Field(), Int('h'))), c.toSame);
        EXPECT_EQ(From("inp.0", Op(c.opcode, 0, Field(), Int('i'))), c.toHigher);
        // They consume where they fail, too.
        EXPECT_EQ(From("inp.0", Not(Op(c.opcode, 0, Field(), Int(c.failing)))),
                  c.opcode == 26 ? "inp.0!" : "inp.1!");
    }
    // Numbers have a sign. The left operand comes first in both directions.
    Check({{"inp.0", Lt(Int(-1), Int(1)), "inp.0"},
           {"inp.0", Lt(Field(), Field()), "inp.2"},
           {"inp.4<", Lt(Field(), Field()), "inp.2"},
           {"inp.4<", Gt(Field(), Field()), "no"},
           {"phone.0", Eq(Add(Field(), Int('l' - 'o')), Field()), "phone.0"}});
}

TEST_F(ValuesTest, NameEqConsumesAndGoesOn) {
    Check({{"inp.0", NameEq(Field(), Int('h')), "inp.1!"},
           {"inp.0", NameEq(Int(1), Int(1)), "inp.0!"},
           {"inp.0", NameEq(Field(), Int('h'), See('c')), "inp.1 c>"},
           {"inp.0", NameEq(Field(), Field(), See('c')), "no"},
           {"inp.0", Not(NameEq(Field(), Int('x'))), "inp.0!"}});
}

TEST_F(ValuesTest, AngleBrktIsOneToken) {
    Check({{"inp.0", AngleBrkt(), "inp.1!"},
           {"phone.1", AngleBrkt(), "phone.3!"},
           {"inp.4", AngleBrkt(See('a')), "no"},
           {"inp.0", AngleBrkt(Is('h'), AngleBrkt(Is('o'))), "inp.2!"},
           {"inp.0", AngleBrkt(Lt(Field(), Field()), See('c')), "inp.1 c>"},
           // The end of the condition is not the end of the sequence.
           {"inp.0", AngleBrkt(NameEq(Field(), Int('h')), See('c')), "inp.1 c>"}});
}

}  // namespace
