// The order in which searches visit the streams.
#include <gtest/gtest.h>

#include "support/tiers.h"

using namespace mlds_test;

namespace {

// Searches start with the stream that has the fewest marks, as long as it has more than two, and
// with the later one among equals. The mark that is found first says which it was.
TEST(Ranking, GoesByTheNumberOfMarks) {
    const struct {
        int marks[3];
        const char* found;
    } rows[] = {{{5, 4, 3}, "t.2"}, {{3, 4, 5}, "t.0"}, {{4, 3, 5}, "t.1"},
                {{3, 3, 3}, "t.2"}, {{3, 3, 4}, "t.1"}, {{3, 4, 3}, "t.2"},
                {{2, 3, 4}, "t.1"}, {{5, 2, 2}, "t.0"}, {{2, 2, 2}, "t.end"}};
    for (const auto& row : rows) {
        Tiers t{{"m", "||a||"}, {"t", "|||||||||"}, {"x"}, {"y"}, {"z"}};
        for (int i = 0; i < 3; ++i) {
            CStream* p = t.plexa.pStream(i + 2);
            Fill(p, std::string(static_cast<std::size_t>(row.marks[i]) + 2, '|'));
            t.MarkAt("m.0")->SetToSynchronous(Mark(p, 0));
            t.Mark("t", i)->SetToSynchronous(Mark(p, 1));
        }
        t.plexa.RankPopulatedStreams();
        EXPECT_EQ(Where(t.plexa.SubContext(t["t"], t.MarkAt("m.0"), sdRight)), row.found);
    }
}

TEST(Registry, KeepsWhatTheHostTellsIt) {
    int engine = 0;
    auto* pEngine = reinterpret_cast<CEngine*>(&engine);  // the library never looks into it
    CPlexa plexa(pEngine);
    EXPECT_EQ(plexa.getEngine(), pEngine);
    EXPECT_EQ(plexa.GetDefaultTimeStream(), nullptr);
    EXPECT_EQ(plexa.GetLanguage() * 10 + plexa.GetDialect(), 0);
    EXPECT_FALSE(plexa.isSynthesisAbort());
    CStream* pStream = plexa.pStream(plexa.AddStream("time"));
    plexa.SetLanguage(3);
    plexa.SetDialect(4);
    plexa.setAbort(true);
    EXPECT_TRUE(plexa.SetDefaultTimeStream(pStream));
    plexa.CPlexaReset();
    const CPlexa copy(plexa);
    for (CPlexa p : {plexa, copy}) {
        EXPECT_EQ(p.GetLanguage() * 10 + p.GetDialect(), 34);
        EXPECT_TRUE(p.isSynthesisAbort());
        EXPECT_EQ(p.GetDefaultTimeStream(), pStream);
        EXPECT_EQ(p.getEngine(), pEngine);
    }
    plexa.setAbort(false);
    EXPECT_FALSE(plexa.isSynthesisAbort());
}

}  // namespace
