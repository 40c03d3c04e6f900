// The viewer's mirror beside the container that it was rebuilt from, and engines that misbehave.
#include "mirror.h"

#include <gtest/gtest.h>
#include <poll.h>

#include <random>
#include <thread>

#include "engineserver.h"
#include "report/messages.h"
#include "support/tiers.h"
#include "terminal.h"
#include "text.h"
#include "viewer.h"
#include "viewer/fakeviewer.h"
#include "viewer/link/greetings.h"
#include "words.h"

using namespace mlds_test;
using namespace mlds_viewer;

namespace {

// The program's loop, on a port of its own.
class RunningViewer {
public:
    RunningViewer() {
        Socket listener = Listen("127.0.0.1", 0);
        m_port = PortOf(listener);
        m_thread = std::thread([this, s = std::move(listener)]() mutable { Run(std::move(s)); });
    }
    ~RunningViewer() {
        m_bEnd = true;
        m_thread.join();
    }
    std::string Config() const { return "host = 127.0.0.1\nport = " + std::to_string(m_port); }
    int Port() const { return m_port; }
    Mirror Now() { return *viewer.StructureAt(static_cast<std::size_t>(-1)); }
    /// True when the status is as wanted, within a second.
    template <typename Wanted>
    bool Await(Wanted wanted) const {
        for (int i = 0; i < 100 && !wanted(viewer.status()); ++i) ::usleep(10000);
        return wanted(viewer.status());
    }

    Viewer viewer;

private:
    void Run(Socket listener) {
        EngineServer engines(std::move(listener), viewer);
        for (std::vector<pollfd> polled; !m_bEnd; polled.clear()) {
            polled.push_back({viewer.wakeUp(), POLLIN, 0});
            engines.AddTo(polled);
            ::poll(polled.data(), polled.size(), 10);
            engines.Serve();
        }
    }

    int m_port = 0;
    std::atomic<bool> m_bEnd = false;
    std::thread m_thread;
};

// The streams of a container and of its mirror in the same words.
std::string TextOf(CPlexa& plexa, bool bTies = true) {
    std::string text;
    for (int i = 0; i < plexa.GetNumStreams(); ++i) {
        CStream* pStream = plexa.pStream(i);
        text += std::string(pStream->GetStreamName()) + ":";
        for (CStreamObj* p : mlds_test::Chain(pStream)) {
            text += ' ';
            auto* pToken = p->GetObjectType(otToken) ? static_cast<CToken*>(p) : nullptr;
            for (int k = 0; pToken != nullptr && k < pStream->GetNumFields(); ++k) {
                const char* value = pToken->GetFieldValueString(k);
                text += std::string("/") + (value != nullptr ? value : "");
            }
            for (int k = 0; pToken == nullptr && k < plexa.GetNumStreams(); ++k) {
                auto* pMark = static_cast<CSyncMark*>(p)->GetCorrespondingSyncMark(k);
                text += !bTies ? "" : pMark != nullptr ? "|" : ".";
            }
        }
        text += '\n';
    }
    return text;
}

std::string TextOf(const Mirror& mirror, bool bTies = true) {
    std::string text;
    for (std::size_t i = 0; i < mirror.streams().size(); ++i) {
        text += mirror.streams()[i].name + ":";
        for (const Id id : mirror.Chain(static_cast<int>(i))) {
            text += ' ';
            const mlds_viewer::Object& object = *mirror.Find(id);
            for (const std::string& value : object.values) text += "/" + value;
            if (object.kind == Kind::token) continue;
            const std::map<int, Id>& group = mirror.GroupOf(id);
            for (int k = 0; k < static_cast<int>(mirror.streams().size()); ++k) {
                text += !bTies ? "" : group.contains(k) ? "|" : ".";
            }
        }
        text += '\n';
    }
    return text;
}

struct Pair {
    Pair() {
        CField* pTone = t["p"]->AddField("tone");
        const char* tones[] = {"high", "low"};
        pTone->SetFieldType(fvEnum);
        pTone->SetPossibleValues(tones, 2);
        t["p"]->AddField("stress")->SetFieldType(fvInt);
        t["p"]->AddField("pitch")->SetFieldType(fvFloat);
    }
    RunningViewer running;
    ConfigFolder folder{running.Config()};
    Tiers t{{"p", "||", {"a", "b", "a|b"}}, {"q", "||x|y||"}, {"r", "|||"}};
};

TEST(Mirror, IsWhatTheContainerHolds) {
    Pair pair;
    Tiers& t = pair.t;
    t.TieAll("q.0=r.0");
    ASSERT_TRUE(t.plexa.StartMessageEngine());
    EXPECT_EQ(TextOf(pair.running.Now()), TextOf(t.plexa)) << "at first";
    std::mt19937 random(5);
    const auto below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    for (int step = 0; step < 300; ++step) {
        CStream* pStream = t.plexa.pStream(below(2));
        const std::vector<CStreamObj*> chain = mlds_test::Chain(pStream);
        CStreamObj* p = chain[static_cast<std::size_t>(below(static_cast<int>(chain.size())))];
        auto* pMark = p->GetObjectType(otSyncMark) ? static_cast<CSyncMark*>(p) : nullptr;
        CStream* streams[] = {t["r"]};
        switch (below(6)) {
            case 0: t.plexa.InsertLiteralString(t["q"], "zu", pMark, pMark); break;
            case 1: t.plexa.InsertString(t["p"], "a'a|b'b", pMark, pMark); break;
            case 2:
                if (pMark != nullptr) t.plexa.ProjectSyncMark(streams, 1, pMark, nullptr, sdRight);
                break;
            case 3:
                if (pMark == nullptr) static_cast<CToken*>(p)->SetFieldValue(2, below(9));
                break;
            case 4:
                if (step % 40 == 0) t.plexa.DeleteStreamItems(pStream, pMark, nullptr, bsmKeepBoth);
                break;
            default: pStream->RemoveStreamObj(p, true);
        }
        ASSERT_EQ(TextOf(pair.running.Now(), false), TextOf(t.plexa, false)) << "step " << step;
    }
    // Ties that come later than their marks are not told until the next dump.
    t.plexa.sendEntirePlexaObj(false);
    EXPECT_EQ(TextOf(pair.running.Now()), TextOf(t.plexa)) << "after edits";
    EXPECT_GT(pair.running.Now().nObjects(), 50u);
    t.plexa.CPlexaReset();
    EXPECT_EQ(TextOf(pair.running.Now()), TextOf(t.plexa)) << "emptied";
}

TEST(Mirror, AsksForFieldsAndKnowsVariables) {
    Pair pair;
    Tiers& t = pair.t;
    Viewer& viewer = pair.running.viewer;
    Fill(t["p"], "||a||");
    CSyncMark* pMark = t.Mark("p", 0);
    CVarList list(&t.plexa);
    list.AddSyncMarkPtr("begin", &pMark);
    EXPECT_EQ(viewer.SetField(1, 1, "low"), "no engine is connected");
    ASSERT_TRUE(t.plexa.StartMessageEngine());
    ASSERT_TRUE(pair.running.Await([](const Status& s) { return s.bTakesRequests; }));
    const Mirror mirror = pair.running.Now();
    const std::vector<Id> chain = mirror.Chain(0);
    EXPECT_EQ(VariablesText(mirror), "list " + HandleText(mirror.lists().at(0).id) +
                                         "\n    0 begin = mark " + HandleText(chain[1]) +
                                         " of p\n");
    const auto set = [&](int field, const char* value) {
        const std::string why = viewer.SetField(chain[2], field, value);
        for (int i = 0; i < 20 && why.empty(); ++i) {
            ::usleep(1000);
            t.plexa.ProcessRecvMsg();
        }
        return why;
    };
    EXPECT_EQ(set(1, "low"), "");
    EXPECT_EQ(set(2, "-7"), "");
    EXPECT_EQ(set(3, "2.9"), "");
    EXPECT_EQ(t.Token("p", 0)->GetFieldValueIndex(3), 2);
    EXPECT_EQ(
        pair.running.Now().Find(chain[2])->values,
        (std::vector<std::string>{"a", "low", "-7", t.Token("p", 0)->GetFieldValueString(3)}));
    EXPECT_EQ(set(1, "none"), "the field has no such value");
    EXPECT_EQ(set(2, "1x"), "the field holds whole numbers");
    EXPECT_EQ(set(2, ""), "a value is one word: spaces cannot be sent");
    EXPECT_EQ(set(4, "1"), "the token has no such field");
    EXPECT_EQ(viewer.SetField(chain[1], 0, "a"), "there is no such token any more");
    EXPECT_EQ(viewer.Disconnect(), "");
    EXPECT_TRUE(pair.running.Await([&](const Status& s) {
        t.plexa.ProcessRecvMsg();
        return !s.bConnected;
    }));
    EXPECT_TRUE(t.plexa.StartMessageEngine()) << "the next one";
}

TEST(Mirror, StaysWholeWhateverItIsTold) {
    Mirror mirror;
    const auto tell = [&](int code, const char* text) { mirror.Apply(Understand({code, text})); };
    for (const char* text :
         {"", "x", "0 0x1", "0 0 0 0x1 2", "0 0 51 0x1 0 |a", "0 0 0 0x1 0", "0 0 0 0x1 1 3 0 0x1",
          "0 0 0 0x1 1 -1", "9 0 0 0x1 0 |a", "0 0x100000001 0 0x1 0 |a"}) {
        tell(mlds::msgInserted, text);
        EXPECT_TRUE(std::holds_alternative<Unintelligible>(Understand({mlds::msgInserted, text})))
            << text;
        EXPECT_EQ(mirror.nObjects(), 0u);
    }
    tell(mlds::msgStream, "  0   3 a b|x y 0 2 \nlow\nhi gh|n 1 0 ");
    ASSERT_EQ(mirror.streams().size(), 1u);
    EXPECT_EQ(StreamsText(mirror),
              "0 a b: 0 tokens, 0 marks\n    name  name\n"
              "    x y   enum low hi gh\n    n     int\n");
    tell(mlds::msgStream, "  1   2 q|bars 0 1 \n|");
    EXPECT_EQ(mirror.streams().at(1).name, "q");
    EXPECT_EQ(mirror.streams()[1].fields.size(), 2u) << "of which nothing more is known";
    tell(mlds::msgInserted, "0 0000000000  0 0x00000001 1    1  0 0x00000001 ");
    tell(mlds::msgInserted, "0 0x00000099  0 0x00000002 0 |p|q|low|5");  // behind nobody
    tell(mlds::msgInserted, "0 0x00000002  0 0x00000002 0 |p|low|5");    // behind itself
    tell(mlds::msgInserted, "0 0x00000001  0 0x00000003 1    2  0 0x00000003  7 0x00000001 ");
    tell(mlds::msgRemoved, "0  0 0x00000042 0 ");
    tell(mlds::msgTokenChanged, "0  0 0x00000042 0 |a|b|c");
    EXPECT_EQ(TextOf(mirror), "a b: |. |. /p|q/low/5\nq:\n");
    EXPECT_EQ(mirror.GroupOf(1), (std::map<int, Id>{{0, 3}, {7, 1}})) << "of the last word";
    tell(mlds::msgTokenChanged, "0  0 0x00000001 1    2  0 0x00000001  0 0x00000003 ");
    tell(mlds::msgTokenChanged, "0  0 0x00000003 1    1  0 0x00000003 ");
    tell(mlds::msgTokenChanged, "0  0 0x00000001 1    1  0 0x00000001 ");
    EXPECT_EQ(mirror.GroupOf(1), (std::map<int, Id>{{0, 1}})) << "after a place named twice";
    tell(mlds::msgText, "resetplexa");
    EXPECT_EQ(mirror.Chain(0).size(), 2u) << "its ends";
    tell(mlds::msgStream, "  1   2 q|x 1 0  ");
    EXPECT_EQ(mirror.streams()[1].fields[1].name, "field 1") << "without its number of values";
    tell(mlds::msgLanguage, "3.4");
    tell(mlds::msgFullDump, "");
    EXPECT_EQ(mirror.nObjects() + mirror.streams().size(), 0u) << "all is told anew";
}

TEST(Mirror, IsKeptAsItWasAfterEachMessage) {
    Journal journal({.nEntries = 2000});
    const auto at = [&](std::size_t number) { return TextOf(*Rebuild(journal.ExcerptAt(number))); };
    EXPECT_EQ(journal.shown() + journal.last(), 0u);
    std::vector<std::string> texts{""};
    journal.Add({mlds::msgStream, "  0   1 p"});
    texts.push_back(TextOf(journal.now()));
    for (int i = 1; i <= 3000; ++i) {
        char text[64];
        const bool bRemoved = i % 3 == 0;
        std::snprintf(text, sizeof text,
                      bRemoved ? "%d  0 %#010x 0 " : "%d 0000000000  0 %#010x 0 |t",
                      i % 10 == 0 ? 0 : 1, bRemoved ? i - 2 : i);
        journal.Add({bRemoved ? mlds::msgRemoved : mlds::msgInserted, text});
        texts.push_back(TextOf(journal.now()));
    }
    EXPECT_EQ(journal.last(), 3001u);
    EXPECT_EQ(journal.shown(), 3001u);
    EXPECT_LE(journal.last() - journal.first(), 2600u);
    EXPECT_GE(journal.last() - journal.first(), 1999u);
    for (std::size_t k = journal.first(); k <= journal.last(); k += 97) {
        EXPECT_EQ(at(k), texts[k]) << k;
        EXPECT_EQ(journal.Entries(k, 1).at(0)->number, k);
    }
    EXPECT_EQ(at(1), texts[journal.first()]) << "the oldest there is";
    EXPECT_EQ(ObjectsOf(journal.Entries(2999, 2)), (std::vector<Id>{2998, 2996 + 3}));
    EXPECT_EQ(journal.Entries(1, 9999).size(), journal.last() - journal.first() + 1);
    // From what was built before, whatever that was.
    for (const std::size_t k : {2700U, 2705U, 2701U, 3001U, 2600U, 1500U, 2999U}) {
        const Excerpt excerpt = journal.ExcerptAt(k);
        journal.Remember(k, Rebuild(excerpt));
        EXPECT_EQ(at(k), texts[k]) << k;
        EXPECT_EQ(at(k + 7), texts[std::min<std::size_t>(k + 7, 3001)]) << k;
        EXPECT_EQ(at(k - 7), texts[k - 7]) << k;
        EXPECT_TRUE(journal.ExcerptAt(k).entries.empty()) << "nothing is done twice";
    }
    journal.Add({mlds::msgInserted, "1 0000000000  0 0x00100000 0 |t"});
    EXPECT_EQ(journal.shown(), 3001u) << "not yet";
    journal.Add({mlds::msgDisplayNow, ""});
    EXPECT_EQ(journal.shown(), 3003u);
}

TEST(Mirror, IsKeptWithinBounds) {
    constexpr std::size_t kMegabyte = 1 << 20;
    Journal journal({.nBytes = 8 * kMegabyte});
    journal.Add({mlds::msgStream, "  0   1 p"});
    for (int i = 0; i < 100; ++i) journal.Add({mlds::msgText, std::string(kMegabyte, 'x')});
    EXPECT_LE(journal.nBytes(), 8 * kMegabyte);
    EXPECT_GE(journal.last() - journal.first(), 6u);
    EXPECT_EQ(journal.last(), 101u);
    EXPECT_LT(journal.Entries(101, 1).at(0)->words.size(), 400u);
    EXPECT_EQ(TextOf(*Rebuild(journal.ExcerptAt(101))), "p:\n") << "what went has had its effect";
    // Long names are in every structure that is kept.
    for (unsigned i = 1; i <= 20; ++i) {
        const std::string name(kMegabyte / 8, 'y');
        journal.Add({mlds::msgInserted, "0 0000000000  0 " + HandleText(i) + " 0 |" + name});
        EXPECT_LE(journal.nBytes(), 8 * kMegabyte) << i;
    }
    EXPECT_EQ(journal.now().nObjects(), 20u);
    EXPECT_GT(journal.now().nBytes(), 20 * kMegabyte / 8);
}

TEST(Mirror, KeepsLinesInOrder) {
    EXPECT_EQ(Shown("a\u202Eb\x01"), "a\u27E8U+202E\u27E9b\u2401") << "what orders lines is seen";
    EXPECT_EQ(Shown("\xE9\xE9\xE9\xE9", 3), "\u00E9\u00E9\u2026") << "Latin-1";
    EXPECT_EQ(Shown(std::string(1 << 20, 'x'), 4), "xxx\u2026");
    for (std::size_t n = 0; n < 12; ++n) {  // never inside of a character
        const std::string text = std::string(n, 'x') + "\u05D0\U0001F600\u05D0\u05D0\U0001F600";
        const std::string shown = Shown(text + text + text, n + 2);
        EXPECT_EQ(shown, std::string(n, 'x') + "\u05D0\u2026") << n;
    }
    Mirror mirror;
    const auto tell = [&](int code, const std::string& text) {
        const Event event = Understand({code, text});
        const std::string words = InWords(event, mirror);
        mirror.Apply(event);
        return words;
    };
    tell(mlds::msgStream, "  0   2 \u05D0|n 1 0 ");
    EXPECT_EQ(tell(mlds::msgInserted, "0 0000000000  0 0x00000001 0 |\u05D1|1"),
              "token \u2068\u05D1\u2069 of \u2068\u05D0\u2069 inserted at the beginning");
    EXPECT_EQ(tell(mlds::msgTokenChanged, "0  0 0x00000001 0 |\u05D2|1"),
              "token \u2068\u05D2\u2069 of \u2068\u05D0\u2069 changed: "
              "name \u2068\u05D1\u2069 -> \u2068\u05D2\u2069");
    tell(mlds::msgInserted, "0 0x00000001  0 0x00000002 0 |b|1");
    EXPECT_EQ(TiersText(mirror, 80), "\u2066\u05D0 \u2069|\u2066\u05D2\u2069\u00B7b|\n");
}

TEST(Mirror, IsDrawnAligned) {
    Pair pair;
    Tiers t{{"w", "||word||"}, {"ph", "||a|b||c||"}, {"s", "||\xE9x||"}};
    t.TieAll("w.0=ph.0=s.0 w.1=ph.2 ph.4=s.1");
    ASSERT_TRUE(t.plexa.StartMessageEngine());
    EXPECT_EQ(TiersText(pair.running.Now(), 80),
              "w  ||w\u00B7o\u00B7r\u00B7d|   |\n"
              "ph ||a|b    ||c||\n"
              "s  ||\u00E9\u00B7x       ||\n");
}

TEST(Mirror, IsDrawnAsFarAsItIsTold) {
    Mirror mirror;
    const auto tell = [&](int code, const char* text) { mirror.Apply(Understand({code, text})); };
    tell(mlds::msgStream, "  0   1 never");
    tell(mlds::msgStream, "  1   1 bare");
    tell(mlds::msgStream, "  2   1 half");
    tell(mlds::msgInserted, "0 0000000000  1 0x00000001 0 |a");
    tell(mlds::msgInserted, "0 0x00000001  1 0x00000002 0 |b");
    tell(mlds::msgInserted, "0 0000000000  2 0x00000003 1    1  2 0x00000003 ");
    tell(mlds::msgInserted, "0 0x00000003  2 0x00000004 0 |c");
    EXPECT_EQ(TiersText(mirror, 80), "bare |a\u00B7b|\nhalf |c|\n");
    tell(mlds::msgInserted, "0 0x00000004  2 0x00000005 1    1  2 0x00000005 ");
    tell(mlds::msgInserted, "0 0x00000005  2 0x00000006 0 |d");
    EXPECT_EQ(TiersText(mirror, 80), "bare |a\u00B7b|\nhalf |c\u00B7d|\n");
}

// A value goes out in the encoding that the engine's texts seem to have, from the first on that
// is no UTF-8 until the engine has gone.
TEST(Viewer, TypesInTheEnginesEncoding) {
    Viewer viewer;
    const auto typed = [&](const char* value) {
        const std::string why = viewer.SetField(1, 0, value);
        const std::vector<std::string> packets = viewer.TakePackets();
        return packets.size() == 1 ? packets[0].substr(packets[0].rfind(' ') + 1) : why;
    };
    for (const char* engine : {"first", "second"}) {
        viewer.EngineCame(engine);
        viewer.EngineTakesRequests(true);
        viewer.Receive({mlds::msgStream, "  0   1 p"});
        viewer.Receive({mlds::msgInserted, "0 0000000000  0 0x00000001 0 |a"});
        viewer.Receive({mlds::msgText, "\u00E9"});
        EXPECT_EQ(typed("\u00E9"), "\u00E9") << engine;
        viewer.Receive({mlds::msgText, "caf\xE9"});
        viewer.Receive({mlds::msgText, "plain"});
        EXPECT_EQ(typed("\u00E9"), "\xE9") << engine;
        EXPECT_EQ(typed("\u20AC"),
                  "the engine's encoding, Latin-1, lacks a character of the value");
        viewer.EngineWent("away");
        EXPECT_EQ(typed("x"), "no engine is connected");
    }
}

TEST(Engines, ThatMisbehaveAreLetGo) {
    RunningViewer running;
    const auto connect = [&](const Bytes& greeting) {
        const int s = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        LimitWaiting(s);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(static_cast<std::uint16_t>(running.Port()));
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        EXPECT_EQ(::connect(s, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
        ::send(s, greeting.data(), greeting.size(), MSG_NOSIGNAL);
        return s;
    };
    // What an engine hears: "ack", or "" if the viewer closes.
    const auto hear = [](int s) {
        char bytes[64];
        const ssize_t n = ::recv(s, bytes, sizeof bytes, 0);
        return n > 0 ? "ack" : n < 0 && errno == EAGAIN ? "nothing" : "";
    };
    const auto say = [](int s, const Bytes& bytes) {
        ::send(s, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    };
    const Bytes hello = IntItem(1) + IntItem(mlds::greetNotifications);
    for (const Bytes& greeting : {Bytes("GET / HTTP/1.0\r\n\r\n"), IntItem(2) + IntItem(2000),
                                  IntItem(1) + IntItem(2002), IntItem(1) + IntItem(2001)}) {
        const int s = connect(greeting);
        EXPECT_STREQ(hear(s), "") << greeting;
        ::close(s);
    }
    for (const Bytes& nonsense : {IntItem(999), TextItem("x"), IntItem(1013) + IntItem(5),
                                  IntItem(1013) + Word(8) + Word(0xFFFFFFFF)}) {
        const int engine = connect(hello);
        ASSERT_STREQ(hear(engine), "ack");
        const int second = connect(hello);
        EXPECT_STREQ(hear(second), "") << "one at a time";
        ::close(second);
        say(engine, IntItem(1013) + TextItem("fine"));
        EXPECT_STREQ(hear(engine), "ack");
        const Bytes pieces = IntItem(1003) + TextItem("unintelligible");
        for (const char byte : pieces) say(engine, {byte});
        EXPECT_STREQ(hear(engine), "ack") << "what it says is its own business";
        say(engine, nonsense);
        EXPECT_STREQ(hear(engine), "");
        ::close(engine);
        EXPECT_TRUE(running.Await([](const Status& s) { return !s.bConnected; }));
    }
}

}  // namespace
