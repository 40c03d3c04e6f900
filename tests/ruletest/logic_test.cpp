// Alternation, conjunction, negation, sequence, repetition, options.
#include "rules.h"

namespace {

using mlds_test::Rules;
using LogicTest = Rules;

TEST_F(LogicTest, OrTakesTheFirstThatMatches) {
    Check({{"inp.0", Or(0, 0), "inp.0"},
           {"inp.0", Or(Fail(), 0), "inp.0"},
           {"inp.0", Or(0, AngleBrkt()), "inp.1!"},
           {"inp.0", Or(Unless('h'), 0), "inp.0"},  // goes back
           {"inp.0", Or(See('a'), See('b')), "inp.0 a>"},
           {"inp.0<", Or(See('a'), See('b')), "inp.0 b<"}});
}

TEST_F(LogicTest, AndEndsWhereItsSecondOperandEnds) {
    Check({{"inp.0", And(AngleBrkt(), See('b')), "inp.0! b>"},
           {"inp.0", And(Stay(), Any()), "inp.1"},
           {"inp.0", And(Any(), 0), "inp.0"},
           {"inp.0", And(Fail(), See('b')), "no"},
           {"inp.1<", And(See('a'), See('b')), "inp.1 b<a<"},
           {"inp.1<", And(Any(), Stay()), "inp.0"}});
}

TEST_F(LogicTest, NotConsumesNothingUnlessItsOperandDid) {
    Check({{"inp.0", Not(See('a'), See('b')), "no a>"},
           {"inp.0", Not(Fail()), "inp.0!"},
           {"inp.0", Not(Unless('h')), "inp.1!"},
           {"inp.0", Not(Unless('h'), AngleBrkt(Is('h'))), "inp.1!"},
           // What ends within the operand does not end the sequence.
           {"inp.0", Not(StarsNoBkup(Fail()), See('b')), "inp.0 b>"}});
}

TEST_F(LogicTest, AdjIsASequenceUntilItHasMatched) {
    Check({{"inp.0", Adj(0, 0), "inp.0!"},
           {"inp.0", Adj(Any(), Any(), AngleBrkt()), "inp.3!"},
           {"inp.0", Adj(AngleBrkt(), See('b'), See('c')), "inp.1!"},
           {"inp.0", Adj(Any(), AngleBrkt(), See('c')), "inp.2!"},
           {"inp.0", Adj(See('a'), See('b'), Fail()), "no a>b>"},
           {"inp.2<", Adj(See('a'), See('b'), See('c')), "inp.2 b<a<c<"},
           // A failure may have said that all has matched, too.
           {"inp.0", Adj(Or(StarsNoBkup(Fail()), 0), See('b')), "inp.0!"},
           {"inp.0", Adj(0, StarsNoBkup(Fail()), See('c')), "no"}});
}

TEST_F(LogicTest, StarIsLazyAndLoopsThroughItsOperand) {
    // (.)* c, with the loop closed by the operand's continuation.
    const auto find = [&](int limit, int last) {
        const int star = Star(0, limit, last);
        Link(star, 2, AngleBrkt(0, star));
        return star;
    };
    Check({{"inp.0", Star(See('a'), 0), "inp.0"},  // not even an end
           {"inp.0", Star(See('a'), 0, See('b')), "inp.0 b>"},
           {"inp.0", find(0, AngleBrkt(Is('a'))), "inp.4!"},
           {"inp.0", find(0, AngleBrkt(Or(Is('a'), Is('o')))), "inp.2!"},
           {"inp.0", find(0, AngleBrkt(Is('x'))), "no"},
           {"inp.4<", find(Limit(-1), AngleBrkt(Is('h'))), "inp.0!"},
           // Beyond the last mark there is nothing, not even what would match there.
           {"inp.end", Star(See('a'), 0, See('b')), "no"},
           {"inp.start<", Star(See('a'), 0, See('b')), "no"},
           {"inp.end", Stars(Fail(), 0, See('b')), "no"},
           {"inp.start<", Stars(Fail(), 0, See('b')), "no"}});
    for (const char* limit : {"inp.2", "phone.2"}) {
        m_y = m_tiers.MarkAt(limit);
        Check({{"inp.0", find(Limit(y), AngleBrkt(Is('l'))), "inp.3!"},
               {"inp.0", find(Limit(y), AngleBrkt(Is('a'))), "no"},
               {"inp.4<", find(Limit(y), AngleBrkt(Is('o'))), "inp.1!"},
               {"inp.4<", find(Limit(y), AngleBrkt(Is('h'))), "no"}});
    }
}

TEST_F(LogicTest, StarFailsAndStarsMatchesWithoutALimit) {
    CSyncMark* pLoose = m_tiers.plexa.CreateSyncMark(m_tiers["phone"]);
    for (const std::string limit :
         {"inp.2", "inp.3", "word.2", "inp.1", "word.0", "null", "loose"}) {
        SCOPED_TRACE(limit);
        m_y = limit == "loose" ? pLoose : m_tiers.MarkAt(limit);
        const bool bBehind = limit == "inp.1" || limit == "word.0";
        const bool bNone = limit == "null" || limit == "loose";
        Check({{"inp.2", Star(See('a'), Limit(y), See('b')), bBehind || bNone ? "no" : "inp.2 b>"},
               {"inp.2", Stars(Fail(), Limit(y), See('b')),
                bBehind ? "no"
                : bNone ? "inp.2"
                        : "inp.2 b>"}});
    }
    for (const int variable : {+none, +t, 77}) {
        Check({{"inp.2", Star(See('a'), Limit(variable), See('b')), "no"},
               {"inp.2", Stars(See('a'), Limit(variable), See('b')), "inp.2"}});
    }
    m_y = m_tiers.MarkAt("phone.2");  // where Star is not repeated
    Check({{"inp.2", Star(See('a'), Limit(y), Fail()), "no"},
           {"inp.1", Star(See('a'), Limit(y), Fail()), "inp.1 a>"}});
    m_y = m_tiers.MarkAt("inp.3");
    Check({{"inp.1", Stars(Any(), Limit(y), See('b')), "no"},  // goes past it
           {"inp.2<", Star(See('a'), Limit(y), See('b')), "no"},
           {"inp.2<", Stars(Fail(), Limit(y), See('b')), "no"},
           {"inp.3<", Stars(Fail(), Limit(y), See('b')), "inp.3 b<"}});
    CStream::DiscardStreamObj(pLoose);
}

TEST_F(LogicTest, StarsIsGreedyAndDoesNotGoBack) {
    Check({{"inp.0", Stars(Any(), 0, See('c')), "inp.4 c>"},
           {"inp.1", Stars(Any(), 0), "inp.4!"},
           {"inp.3<", Stars(Any(), 0), "inp.0!"},
           {"inp.0", Stars(Any(), 0, AngleBrkt()), "no"},
           {"inp.0", Stars(AngleBrkt(), 0, See('c')), "inp.1!"},
           // The rest goes on from where the operand failed.
           {"inp.0", Stars(Unless('l'), 0, AngleBrkt()), "inp.4!"},
           // An empty match ends the repetition, and is no match at the end of a sequence.
           {"inp.0", Stars(See('a'), 0, See('b')), "inp.0 a>b>"},
           {"inp.0", Stars(Stay(), 0), "no"},
           {"inp.0", Or(Stars(Stay(), 0), 0), "inp.0!"},
           // Whether the rest has ended is forgotten where it fails, but not behind an empty match.
           {"inp.0", Or(Stars(Fail(), 0, StarsNoBkup(Fail())), 0), "inp.0"},
           {"inp.0", Or(Stars(Stay(), 0, StarsNoBkup(Fail())), 0), "inp.0!"},
           {"inp.0", Stars(Fail(), 0, AngleBrkt()), "inp.1!"}});
}

TEST_F(LogicTest, StarsMatchesWhereItsRestLeadsBackToIt) {
    const auto loop = [&](int operand) {
        const int stars = Stars(operand, 0);
        Link(stars, 4, Adj(See('c'), stars));
        return stars;
    };
    Check({{"inp.0", loop(Fail()), "inp.0! c>"}, {"inp.0", loop(Any()), "inp.4! c>"}});
    // Having left the place, it is not inside itself any more.
    const int stars = Stars(Fail(), 0);
    Link(stars, 4, Adj(See('c'), Any(), stars));
    const int again = Stars(Fail(), 0, Fail());
    Check({{"inp.2", Qmarks(stars, See('d')), "inp.2 c>c>c>d>"},
           // Two that share no place, one after the other; one that is tried twice.
           {"inp.0", Stars(Fail(), 0, Stars(Fail(), 0, See('c'))), "inp.0 c>"},
           {"inp.0", Or(again, again), "no"}});
}

TEST_F(LogicTest, StarsNoBkupNeverEndsASequence) {
    Check({{"inp.0", StarsNoBkup(Any()), "no"},
           {"inp.0", Or(StarsNoBkup(Any()), 0), "inp.0!"},
           {"inp.0", StarsNoBkup(Any(), See('c')), "inp.4 c>"},
           {"inp.0", StarsNoBkup(AngleBrkt(), See('c')), "inp.4 c>"},
           {"inp.0", StarsNoBkup(Unless('l'), AngleBrkt(Is('l'))), "inp.3!"},
           {"inp.0", StarsNoBkup(See('a'), See('c')), "inp.0 a>c>"}});
}

TEST_F(LogicTest, OptionsTryWithoutOrWithTheirOperandFirst) {
    Check({{"inp.0", Qmark(See('a')), "inp.0!"},
           {"inp.0", Qmark(Any(), See('c')), "inp.0 c>"},
           {"inp.0", Qmark(Any(), AngleBrkt(Is('o'))), "inp.2!"},
           {"inp.0", Qmark(AngleBrkt(), AngleBrkt(Is('l'))), "inp.1!"},
           {"inp.0", Qmarks(Any()), "inp.1!"},
           {"inp.0", Qmarks(Unless('h')), "inp.0!"},
           {"inp.0", Qmarks(Any(), See('c')), "inp.1 c>"},
           {"inp.0", Qmarks(AngleBrkt(), See('c')), "inp.1!"},
           {"inp.0", Qmarks(Any(), AngleBrkt(Is('h'))), "inp.1!"},  // without it, then
           {"inp.0", Qmarks(Any(), AngleBrkt(Is('l'))), "no"},
           // An operand that is absent fails where it would be tried, and only there.
           {"inp.0", Qmark(0, See('c')), "inp.0 c>"},
           {"inp.0", Star(0, 0, See('c')), "inp.0 c>"},
           {"inp.0", Qmark(0), "inp.0!"},
           {"inp.0", Star(0, 0), "inp.0"},
           {"inp.0", Qmark(0, Fail()), "no"},
           {"inp.0", Star(0, 0, Fail()), "no"},
           {"inp.0", Stars(0, Limit(none), See('c')), "inp.0"},
           {"inp.0", Stars(0, 0, See('c')), "no"},
           {"inp.0", Qmarks(0, See('c')), "no"}});
}

}  // namespace
