// Tiers over time: where labels are, and the files that are made of them.
#include <gmock/gmock.h>

#include <sstream>

#include "mlds/io/filenames.h"
#include "mlds/io/svg.h"
#include "mlds/io/textgrid.h"
#include "mlds/io/timeline.h"
#include "support/tiers.h"

namespace {

using mlds::io::TextGrid;
using mlds::io::Timeline;
using mlds::io::TimelineOf;
using mlds::io::View;
using mlds_test::Tiers;
using testing::HasSubstr;

// "que ": the u is silent, a pause follows; the word ends before it.
struct Que {
    Tiers tiers{{"text", "||q|u|e|,||"}, {"word", "||que||", {"que"}}, {"time", "||||||"}};
    View view = mlds::io::ViewOf(tiers.plexa);

    Que() {
        CStream* pTime = tiers["time"];
        pTime->GetField(0)->SetFieldType(fvInt);
        int i = 0;
        for (const char* duration : {"50", "100", "250"}) {
            CToken* pToken = pTime->CreateToken(duration);
            CSyncMark* pLeft = tiers.Mark("time", i);
            pTime->InsertStreamObj(pToken, pLeft, pLeft->GetNextSyncMark());
            ++i;
        }
        tiers.TieAll("text.0=word.0=time.0 text.2=time.1 text.3=word.1=time.2 text.4=time.3");
        view.pTime = pTime;
        view.lanes[1].bGuides = true;
        view.lanes[1].highlighted = [](CToken*) { return true; };
    }
};

std::string Shown(const mlds::io::TimedTier& tier) {
    std::ostringstream out;
    for (const mlds::io::TimedLabel& label : tier.labels) {
        out << label.begin << ' ' << label.text << (label.bHighlighted ? "! " : " ");
    }
    out << tier.labels.back().end;
    return out.str();
}

TEST(Timeline, CoversAllTimeInEveryLane) {
    Que que;
    const Timeline timeline = TimelineOf(que.view);
    ASSERT_EQ(timeline.tiers.size(), 3u);
    EXPECT_EQ(Shown(timeline.tiers[0]), "0 q 25 u 50 e 150 , 400");
    EXPECT_EQ(Shown(timeline.tiers[1]), "0 que! 150  400");
    EXPECT_EQ(Shown(timeline.tiers[2]), "0 50 50 100 150 250 400");
}

TEST(Timeline, WhatTakesNoTimeStandsBeforeWhatFollows) {
    Que que;
    que.tiers.Token("time", 1)->SetFieldValue(0, 0);
    EXPECT_EQ(Shown(TimelineOf(que.view).tiers[0]), "0 q 25 u 50 e, 300");
}

TEST(Timeline, NothingLasts) {
    Que que;
    mlds_test::Fill(que.tiers["time"], "|||");
    const Timeline timeline = TimelineOf(que.view);
    EXPECT_EQ(timeline.end, 0);
    EXPECT_TRUE(timeline.tiers.empty());
    TextGrid grid;
    grid.Add(timeline);
    EXPECT_TRUE(grid.empty());
}

TEST(TextGrid, UtterancesStandOneBehindTheOther) {
    Que que;
    que.view.lanes = {que.view.lanes[1]};
    que.view.lanes[0].label = [](const mlds::io::Interval&) { return "«que\"»\n"; };
    TextGrid grid;
    grid.Add(TimelineOf(que.view));
    grid.Add(TimelineOf(que.view));
    std::ostringstream out;
    grid.Write(out);
    EXPECT_THAT(out.str(), HasSubstr("xmin = 0\nxmax = 0.8\ntiers? <exists>\nsize = 1\n"));
    EXPECT_THAT(out.str(), HasSubstr("intervals: size = 4\n"));
    EXPECT_THAT(out.str(), HasSubstr("        intervals [3]:\n"
                                     "            xmin = 0.4\n"
                                     "            xmax = 0.55\n"
                                     "            text = \"«que\"\"»␊\"\n"));
    EXPECT_TRUE(grid.empty());
}

TEST(TextGrid, LongOnesKeepEveryInterval) {
    Que que;
    TextGrid grid;
    constexpr int kUtterances = 2000;
    for (int i = 0; i < kUtterances; ++i) grid.Add(TimelineOf(que.view));
    std::ostringstream out;
    grid.Write(out);
    const std::string text = out.str();
    std::size_t n = 0;
    for (std::size_t at = 0; (at = text.find("text = ", at)) != std::string::npos; ++at) ++n;
    EXPECT_EQ(n, kUtterances * (4u + 2u + 3u));
    EXPECT_THAT(text, HasSubstr("intervals [8000]:\n            xmin = 799.75\n"
                                "            xmax = 800\n            text = \",\"\n    item [2]:"));
}

TEST(Svg, BoxesGuidesAndEscapes) {
    Que que;
    std::ostringstream out;
    mlds::io::WriteSvg(TimelineOf(que.view), "a<b & \"c\"", out);
    const std::string svg = out.str();
    EXPECT_THAT(svg, HasSubstr(">a&lt;b &amp; &quot;c&quot;</text>"));
    const auto count = [&](const std::string& what) {
        int n = 0;
        for (std::size_t at = 0; (at = svg.find(what, at)) != std::string::npos; ++at) ++n;
        return n;
    };
    EXPECT_EQ(count("stroke=\"#888\""), 4 + 2 + 3);
    EXPECT_EQ(count("stroke=\"#bbb\""), 3);
    EXPECT_EQ(count("fill=\"#f7c873\""), 1);
    EXPECT_EQ(count(" s</text>"), 1);
    EXPECT_THAT(svg, testing::EndsWith("</svg>\n"));
}

TEST(FileNames, NoneIsGivenTwice) {
    mlds::io::FileNames names;
    EXPECT_EQ(names.NameFor("texts/saludo.txt", 3), "saludo-3");
    EXPECT_EQ(names.NameFor("other/saludo.txt", 3), "saludo-3-2");
    EXPECT_EQ(names.NameFor("other/saludo.txt", 0), "saludo");
    EXPECT_EQ(names.NameFor("stdin", 1), "stdin-1");
}

}  // namespace
