// The link to the viewer: what is reported in which words, requests, and viewers that misbehave.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <netdb.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/time.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstring>
#include <fstream>
#include <functional>
#include <memory>
#include <thread>

#include "support/tiers.h"
#include "viewer/fakeviewer.h"

using namespace mlds_test;
using testing::ElementsAre;

namespace {

// Where this program was connected to last. It can be kept from it: a test must not meet a viewer
// that somebody runs on this machine.
std::string connectsTo;
bool bConnectFails = false;

}  // namespace

extern "C" [[gnu::visibility("default")]] int connect(int s, const sockaddr* p, socklen_t size) {
    const auto& address = *reinterpret_cast<const sockaddr_in*>(p);
    connectsTo = ::inet_ntoa(address.sin_addr) + (":" + std::to_string(ntohs(address.sin_port)));
    errno = ECONNREFUSED;
    return bConnectFails ? -1 : static_cast<int>(::syscall(SYS_connect, s, p, size));
}

namespace {

// A container with a stream p that holds one token, connected to a viewer.
struct Linked {
    explicit Linked(Manners manners = {}) : viewer(std::move(manners)) {
        CField* pTone = pStream->AddField("tone");
        const char* tones[] = {"high", "low"};
        pTone->SetFieldType(fvEnum);
        pTone->SetPossibleValues(tones, 2);
        pStream->AddField("stress")->SetFieldType(fvInt);
        pStream->AddField("pitch")->SetFieldType(fvFloat);
        Fill(pStream, "||a||");
        pToken = t.Token("p", 0);
        for (int i = 1; i < 4; ++i) pToken->SetFieldValue(i, 0);
    }
    bool Start() { return t.plexa.StartMessageEngine(); }
    // Sends bytes as a viewer does, and polls until they have come.
    void Request(const Bytes& bytes) {
        viewer.Request(bytes);
        for (int i = 0; i < 10; ++i) {
            ::usleep(1000);
            t.plexa.ProcessRecvMsg();
        }
    }

    FakeViewer viewer;
    ConfigFolder folder{viewer.Config()};
    Tiers t{{"p", "||a||", {"a", "b"}}, {"q"}};
    CStream* pStream = t["p"];
    CToken* pToken = nullptr;
};

const std::vector<std::string> kGreetings{IntItem(1) + IntItem(2000), IntItem(1) + IntItem(2001)};

TEST(Link, ReportsEverythingAtFirst) {
    Linked l;
    l.t.plexa.SetLanguage(3);
    l.t.plexa.SetDialect(4);
    CSyncMark* pVar = l.t.Mark("p", 0);
    CVarList list(&l.t.plexa);
    list.AddSyncMarkPtr("x", &pVar);
    ASSERT_TRUE(l.Start());
    EXPECT_THAT(
        l.viewer.Take(),
        ElementsAre(kGreetings[0], kGreetings[1], "1008 3.4", "1000",
                    "1007   0   4 p|tone 0 2 \nhigh\nlow|stress 1 0 |pitch 2 0 ",
                    "1003 1 0000000000  0 0x00000001 1    2  0 0x00000001  1 0x00000002 ",
                    "1003 1 0x00000001  0 0x00000003 1    1  0 0x00000003 ",
                    "1003 1 0x00000003  0 0x00000004 0 |a|high|0|0.",
                    "1003 1 0x00000004  0 0x00000005 1    1  0 0x00000005 ",
                    "1003 1 0x00000005  0 0x00000006 1    2  0 0x00000006  1 0x00000007 ",
                    "1007   1   1 q",
                    "1003 1 0000000000  1 0x00000002 1    2  0 0x00000001  1 0x00000002 ",
                    "1003 1 0x00000002  1 0x00000007 1    2  0 0x00000006  1 0x00000007 ",
                    "1009 0x00000008", "1010 1 0x00000008 0 0x00000009 x 0x00000003", "1002"));
    EXPECT_TRUE(l.Start()) << "again, over the same connections";
    EXPECT_THAT(l.viewer.Take(), testing::SizeIs(14));
    l.t.plexa.sendEntirePlexaObj(false);
    EXPECT_THAT(l.viewer.Take(),
                ElementsAre("1001", "1003 1 0x00000001  0 0x00000003 1    1  0 0x00000003 ",
                            "1003 1 0x00000003  0 0x00000004 0 |a|high|0|0.",
                            "1003 1 0x00000004  0 0x00000005 1    1  0 0x00000005 ", "1002"));
}

TEST(Link, ReportsChanges) {
    Linked l;
    ASSERT_TRUE(l.Start());
    l.viewer.Take();
    CPlexa& c = l.t.plexa;
    l.pToken->SetFieldValue("stress", 5);
    CSyncMark* pMark = c.CreateSyncMark(l.pStream);
    l.pStream->InsertStreamObj(pMark, 2, l.t.Mark("p", 1));
    l.pStream->m_bQuiet = true;
    CSyncMark* pQuiet = c.CreateSyncMark(l.pStream);
    l.pStream->InsertStreamObj(pQuiet, 2, pMark);
    l.pStream->RemoveStreamObj(pQuiet, true);
    l.pStream->m_bQuiet = false;
    EXPECT_THAT(l.viewer.Take(),
                ElementsAre("1004 0  0 0x00000004 0 |a|high|5|0.",
                            "1003 0 0x00000005  0 0x00000008 1    1  0 0x00000008 ",
                            "1006 0  0 0x00000009 1 "));
    c.InsertString(l.pStream, "b", l.t.Mark("p", 1), pMark);
    CStreamObj* pHeld = l.pStream->RemoveStreamObj(l.t.Token("p", 1), false);
    l.pStream->InsertStreamObj(pHeld, 2, l.t.Mark("p", 1));  // its handle is the same
    l.pStream->RemoveStreamObj(pHeld, true);
    EXPECT_THAT(l.viewer.Take(), ElementsAre("1003 1 0x00000005  0 0x0000000a 0 |b|high|0|0.",
                                             "1002", "1006 0  0 0x0000000a 0 ",
                                             "1003 0 0x00000005  0 0x0000000a 0 |b|high|0|0.",
                                             "1006 0  0 0x0000000a 0 "));
    {
        CVarList list(&c);
        list.AddTokenPtr("t", &l.pToken);
        list.GetVarPtr("t");
    }
    CVarList again(&c);  // most likely where the first was
    EXPECT_THAT(l.viewer.Take(),
                ElementsAre("1009 0x0000000b", "1010 0 0x0000000b 0 0x0000000c t 0x00000004",
                            "1011 0 0x0000000b 0 0x0000000c t 0x00000004", "1012 0x0000000b",
                            "1009 0x0000000d"));
    c.sendMessage("free text");
    c.sendMessage(1005, 0);
    c.sendMessage(1014, 0);
    c.sendMessage(1003, 0);
    c.sendMessage(nullptr);
    c.DelayMessageDisplay(true);
    c.DelayMessageDisplay(false);
    c.DelayMessageDisplay(false);
    c.CPlexaReset();
    c.StopMessageEngine();
    c.StopMessageEngine();
    c.sendMessage("not sent");
    EXPECT_THAT(l.viewer.Take(),
                ElementsAre("1013 free text", "1005", "1002", "1002", "1006 1  0 0x00000003 1 ",
                            "1006 1  0 0x00000004 0 ", "1006 1  0 0x00000005 1 ",
                            "1006 1  0 0x00000008 1 ", "1002", "1013 resetplexa", "4"));
}

TEST(Link, CarriesOutRequests) {
    Linked l;
    ASSERT_TRUE(l.Start());
    l.viewer.Take();
    const auto edit = [&](const char* text) {
        l.Request(EditRequest(text));
        std::string all;
        for (const std::string& message : l.viewer.Take()) all += message.substr(message.find('|'));
        return all;
    };
    EXPECT_EQ(edit("0x00000004 0 0 2 -17x"), "|a|high|-17|0.");
    EXPECT_EQ(edit("4 0 99 3 2.9"), "|a|high|-17|2.");
    EXPECT_EQ(l.pToken->GetFieldValueIndex(3), 2) << "not the bits of a float";
    EXPECT_EQ(edit(" 0X4 0 0 1 low more"), "|a|low|-17|2.");
    EXPECT_EQ(edit("4 0 0 0 b"), "|b|low|-17|2.");
    l.t.plexa.InsertString(l.pStream, "aa", l.t.Mark("p", 1), l.t.Mark("p", 1));
    EXPECT_EQ(l.viewer.Take()[3], "1003 1 0x0000000a  0 0x0000000b 0 |a|high|0|0.");
    EXPECT_EQ(edit("0xB 0 0 2 10"), "|a|high|10|0.");
    EXPECT_EQ(edit("0x0b 0 0 2 11"), "|a|high|11|0.");
    for (const char* ignored :
         {"4 1 0 2 3", "3 0 0 2 3", "3 1 0 2 3", "99 0 0 2 3", "0 0 0 2 3", "4 0 0 4 3",
          "4 0 0 -1 3", "4 0 0 2", "4 0 0 x 3", "zz 0 0 2 3", "100000004 0 0 2 3", "4 0 0 3 1e10",
          "4 0 0 3 nan", "4 0 0 1 nosuch", ""}) {
        EXPECT_EQ(edit(ignored), "") << ignored;
    }
    l.pStream->RemoveStreamObj(l.pToken, false);
    EXPECT_NE(l.viewer.Take(), std::vector<std::string>{});
    EXPECT_EQ(edit("4 0 0 2 3"), "") << "no longer in a stream";
    CStream::DiscardStreamObj(l.pToken);
    EXPECT_EQ(edit("4 0 0 2 3"), "");
    l.Request(IntItem(77) + IntItem(4) + EditRequest("4 0 0 2 3"));
    l.t.plexa.sendMessage("gone");
    EXPECT_THAT(l.viewer.Take(), ElementsAre());
}

int OpenDescriptors() {
    int n = 0;
    for (int fd = 0; fd < 2000; ++fd) n += ::fcntl(fd, F_GETFD) != -1 ? 1 : 0;
    return n;
}

TEST(Link, TakesRequestsHoweverTheyCome) {
    Linked l;
    ASSERT_TRUE(l.Start());
    CPlexa& c = l.t.plexa;
    const auto stress = [&] { return l.pToken->GetFieldValueIndex(2); };
    const Bytes request = EditRequest("4 0 0 2 1");
    for (const char byte : request) l.Request({byte});
    EXPECT_EQ(stress(), 1) << "in pieces";
    l.Request(EditRequest("4 0 0 2 2") + IntItem(9) + EditRequest("4 0 0 2 3") +
              request.substr(0, 20));
    EXPECT_EQ(stress(), 3) << "several, the last not whole";
    l.Request(EditRequest("4 0 0 2 4"));
    EXPECT_EQ(stress(), 4) << "after one that stays cut";
    l.Request(IntItem(1004) + Word(8) + Word(16000) + "4 0 0 2 9");
    l.Request(EditRequest("4 0 0 2 5"));
    EXPECT_EQ(stress(), 5) << "after one whose end is far away";
    for (const Bytes& junk : {IntItem(0), TextItem("4 0 0 2 7"), Bytes("\0\0\0\x18", 4)}) {
        l.Request(EditRequest("4 0 0 2 8").substr(0, 12));
        l.Request(EditRequest("4 0 0 2 8").substr(12) + EditRequest("4 0 0 2 4") + junk);
        EXPECT_EQ(stress(), 4) << "in front of what is none";
        l.Request(EditRequest("4 0 0 2 0"));
    }
    l.Request(IntItem(1004) + EditRequest("4 0 0 2 4"));
    EXPECT_EQ(stress(), 4) << "behind one without a text";
    l.Request(IntItem(1004) + Word(8) + Word(0x7FFFFFFF) + "4 0 0 2 5");
    l.Request(IntItem(1004) + IntItem(9));
    l.Request(TextItem("4 0 0 2 5") + Word(24));
    l.Request(Bytes(70000, 'x'));
    std::uint32_t seed = 1;
    Bytes noise(5000, '\0');
    for (char& byte : noise) byte = static_cast<char>((seed = seed * 69069 + 1) >> 24);
    l.Request(noise);
    EXPECT_EQ(stress(), 4) << "what is no request";
    l.Request(EditRequest("4 0 0 2 6 " + std::string(9000, 'x')));
    EXPECT_EQ(stress(), 6) << "longer than the buffer";
    l.viewer.CloseRequests();
    l.Request(request);
    l.viewer.Take();
    c.sendMessage("still there");
    EXPECT_THAT(l.viewer.Take(), ElementsAre("1013 still there"));
}

TEST(Link, TakesEveryAcknowledgement) {
    for (const std::vector<Bytes>& acks : std::vector<std::vector<Bytes>>{
             {"x"}, {"\x03", IntItem(0).substr(1)}, {TextItem("wrong")}, {Bytes(20000, 'x')}}) {
        Linked l(Manners{.acks = acks});
        ASSERT_TRUE(l.Start());
        int nAcks = 2 + 12;  // those for the greetings and for the report of everything
        for (int i = 0; i < 5; ++i) {
            // What has come late for one packet is not taken for the next one's acknowledgement:
            // that the report is over means that the viewer has it.
            ASSERT_TRUE(l.viewer.AwaitAcks(nAcks++));
            l.viewer.Take();
            l.pToken->SetFieldValue("stress", i);
            EXPECT_THAT(l.viewer.Take(), testing::SizeIs(1)) << i;
        }
    }
}

TEST(Link, EndsAtAnyMessage) {
    const int nOpen = OpenDescriptors();
    for (int n = 1; n < 20; ++n) {
        Linked l(Manners{.nMessages = n});
        l.Start();
        l.t.plexa.InsertString(l.pStream, "bb", l.t.Mark("p", 1), l.t.Mark("p", 1));
        l.t.plexa.ProcessRecvMsg();
        EXPECT_EQ(l.t.Picture("p"), "||a|b|b||");
        for (int i = 0; i < 20; ++i) l.t.plexa.sendMessage("more");
        l.t.plexa.ProcessRecvMsg();
        l.viewer.Take();
        ASSERT_TRUE(l.Start()) << "the next connection";
        EXPECT_THAT(l.viewer.Take(),
                    testing::Contains("1003 1 0x00000003  0 0x00000004 0 |a|high|0|0."))
            << "with handles of its own";
        EXPECT_EQ(CheckStructure(l.t.plexa), "");
    }
    EXPECT_EQ(OpenDescriptors(), nOpen);
}

// Whether the library had to be told that the viewer went, or is about to find out by itself.
TEST(Link, CountsAViewerThatWentAsNone) {
    for (const bool bAsked : {true, false}) {
        Linked l;
        EXPECT_FALSE(l.t.plexa.HasViewer());
        ASSERT_TRUE(l.Start());
        EXPECT_TRUE(l.t.plexa.HasViewer());
        l.viewer.Take();
        l.viewer.Leave();
        EXPECT_FALSE(bAsked && l.t.plexa.HasViewer());
        ASSERT_TRUE(l.Start());
        EXPECT_TRUE(l.t.plexa.HasViewer());
        const std::vector<std::string> told = l.viewer.Take();
        ASSERT_THAT(told, testing::SizeIs(14));
        EXPECT_EQ(told.back(), "1002");
    }
}

int Milliseconds(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    const auto time = std::chrono::steady_clock::now() - start;
    return static_cast<int>(std::chrono::duration_cast<std::chrono::milliseconds>(time).count());
}

// A viewer that stops answering costs the host its patience once. A minute is "without end".
TEST(Link, LosesPatienceWithASilentViewer) {
    const int nOpen = OpenDescriptors();
    for (const int nAnswers : {0, 1, 2, 8, 16}) {
        Linked l(Manners{.nAnswers = nAnswers});
        CPlexa& c = l.t.plexa;
        c.SetViewerPatience(300);  // acknowledgements of a busy machine are quicker
        const int nTime = Milliseconds([&] {
            EXPECT_EQ(l.Start(), nAnswers >= 2) << "whether both greetings were answered";
            c.InsertString(l.pStream, "bb", l.t.Mark("p", 1), l.t.Mark("p", 1));
            for (int i = 0; i < 100; ++i) c.sendMessage("more");
        });
        EXPECT_GE(nTime, 300);
        EXPECT_LT(nTime, 5000);
        EXPECT_FALSE(c.HasViewer());
        EXPECT_EQ(l.t.Picture("p"), "||a|b|b||");
        FakeViewer next(Manners{.nAnswers = 25});
        std::ofstream("plexaview.cfg") << next.Config();
        EXPECT_TRUE(l.Start());
        EXPECT_TRUE(c.HasViewer());
        EXPECT_LT(Milliseconds([&] {
                      for (int i = 0; i < 30; ++i) c.sendMessage("more");
                  }),
                  5000)
            << "and the patience is still there";
        EXPECT_FALSE(c.HasViewer());
    }
    EXPECT_EQ(OpenDescriptors(), nOpen);
}

TEST(Link, LosesPatienceWhereverItWaits) {
    {
        Linked l;
        ASSERT_TRUE(l.Start());
        l.t.plexa.SetViewerPatience(60);
        l.viewer.Freeze();
        const std::string text(32 << 20, 'x');  // more than the system takes off our hands
        const int nTime = Milliseconds([&] { l.t.plexa.sendMessage(text.c_str()); });
        EXPECT_GE(nTime, 60);
        EXPECT_LT(nTime, 5000) << "in the middle of a message";
        EXPECT_FALSE(l.t.plexa.HasViewer());
    }
    {
        // A viewer that does not get round to accepting anybody.
        const int listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto* p = reinterpret_cast<sockaddr*>(&address);
        ASSERT_EQ(::bind(listener, p, size), 0);
        ASSERT_EQ(::listen(listener, 0), 0);
        ::getsockname(listener, p, &size);
        std::vector<int> waiting;
        for (int i = 0; i < 4; ++i) {
            waiting.push_back(::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
            ::connect(waiting.back(), p, size);
        }
        ConfigFolder folder("port=" + std::to_string(ntohs(address.sin_port)));
        Tiers t{{"p"}};
        t.plexa.SetViewerPatience(60);
        std::atomic<bool> bDone{false};
        std::thread limit([&] {
            for (int i = 0; !bDone && i < 10000; ++i) ::usleep(1000);
            ::close(listener);  // refuses those that still ask
        });
        const int nTime = Milliseconds([&] { EXPECT_FALSE(t.plexa.StartMessageEngine()); });
        bDone = true;
        limit.join();
        EXPECT_GE(nTime, 60);
        EXPECT_LT(nTime, 5000);
        for (const int fd : waiting) ::close(fd);
    }
}

TEST(Link, ReportsListsUnderCodesOfVariablesAlone) {
    Linked l;
    CSyncMark* pVar = l.t.Mark("p", 0);
    CVarList list(&l.t.plexa);
    list.AddSyncMarkPtr("x", &pVar);
    ASSERT_TRUE(l.Start());
    l.viewer.Take();
    const char* line = " 1 0x00000008 0 0x00000009 x 0x00000003";
    for (const int code : {1003, 1004, 1006, 1009, 1012, 77, -1}) list.SendOutThisVarList(code);
    EXPECT_THAT(l.viewer.Take(), testing::Each("1002")) << "about no variable";
    list.SendOutThisVarList(1011);
    EXPECT_THAT(l.viewer.Take(), ElementsAre(std::string("1011") + line, "1002"));
}

TEST(Link, NeedsOnlyTheFirstConnection) {
    {
        Linked l(Manners{.bRefuseRequests = true});
        EXPECT_TRUE(l.Start());
        l.viewer.Take();
        l.t.plexa.ProcessRecvMsg();
        l.pToken->SetFieldValue("stress", 1);
        EXPECT_THAT(l.viewer.Take(), testing::SizeIs(1));
    }
    const char* configs[] = {"host=127.0.0.1\nport=1\n", "host = nosuch\n",
                             "host=\nport 5000\nport=1"};
    for (const char* config : configs) {
        ConfigFolder folder(config);
        Tiers t{{"p"}};
        EXPECT_FALSE(t.plexa.StartMessageEngine()) << config;
        t.plexa.sendMessage("nobody there");
        t.plexa.ProcessRecvMsg();
    }
}

TEST(Link, FindsItsConfiguration) {
    FakeViewer viewer;
    std::string port = viewer.Config();
    port = port.substr(port.find("port") + 7);
    const std::string configs[] = {
        "port 1\n#HostName=127.0.0.1 and more\nhost 10.0.0.1\nViewPort=1\nport=" + port,
        // 127.0.0.2 would be the same machine, where nobody listens at that address.
        "host=127.0.0.2\nport=1\nHOST\t=\t127.0.0.1\nPORT = " + port};
    for (const std::string& config : configs) {
        ConfigFolder folder(config);
        Tiers t{{"p"}};
        EXPECT_TRUE(t.plexa.StartMessageEngine()) << config;
    }
}

TEST(Link, NeedsNoConfiguration) {
    ConfigFolder folder("");
    std::filesystem::remove("plexaview.cfg");
    connectsTo = "nowhere";
    bConnectFails = true;
    Tiers t{{"p"}};
    EXPECT_FALSE(t.plexa.StartMessageEngine());
    bConnectFails = false;
    EXPECT_EQ(connectsTo, "127.0.0.1:4801");
}

TEST(Link, KeepsLongTextsWhole) {
    Linked l;
    std::vector<std::string> names(50, std::string(30, 'x'));
    std::vector<const char*> values;
    for (const std::string& name : names) values.push_back(name.c_str());
    for (int i = 0; i < 20; ++i) {
        l.t["q"]->AddField(std::to_string(i).c_str())->SetPossibleValues(values.data(), 50);
    }
    CField* pMany = l.t["q"]->AddField("many");
    values.resize(60, "y");
    pMany->SetPossibleValues(values.data(), 60);
    ASSERT_TRUE(l.Start());
    const std::string text(100000, 'y');
    l.t.plexa.sendMessage(text.c_str());
    const std::vector<std::string> all = l.viewer.Take();
    EXPECT_EQ(all.back(), "1013 " + text);
    const auto it = std::find_if(all.begin(), all.end(), [](const std::string& message) {
        return message.rfind("1007   1  22 q|0 ", 0) == 0;
    });
    ASSERT_NE(it, all.end());
    EXPECT_GT(it->size(), 20u * 50 * 31);
    EXPECT_EQ(it->substr(it->find("|many ")), "|many 0 0 ") << "too many to list";
}

// What a host's process may be like.
TEST(Link, WorksInAnyProcess) {
    auto pLinked = std::make_unique<Linked>();
    Linked& l = *pLinked;
    rlimit limit{3000, 3000};
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &limit), 0);
    std::vector<int> many;
    while (many.empty() || many.back() < 1500) many.push_back(::dup(2));
    struct sigaction action {};
    action.sa_handler = [](int) {};  // without SA_RESTART
    struct sigaction old {};
    ::sigaction(SIGALRM, &action, &old);
    itimerval often{{0, 500}, {0, 500}}, off{};
    ::setitimer(ITIMER_REAL, &often, nullptr);

    l.t.plexa.SetViewerPatience(20000);  // of which signals take nothing
    ASSERT_TRUE(l.Start());
    int nKeptAlive = 0;
    for (int fd = 3; fd < 2000; ++fd) {
        sockaddr_in there{};
        socklen_t there_size = sizeof there;
        int on = 0;
        socklen_t on_size = sizeof on;
        if (::getpeername(fd, reinterpret_cast<sockaddr*>(&there), &there_size) == 0 &&
            ntohs(there.sin_port) == l.viewer.Port()) {
            ::getsockopt(fd, SOL_SOCKET, SO_KEEPALIVE, &on, &on_size);
            nKeptAlive += on;
        }
    }
    EXPECT_EQ(nKeptAlive, 2);
    for (int i = 0; i < 300; ++i) l.pToken->SetFieldValue("stress", i);
    l.Request(EditRequest("4 0 0 2 -1"));
    EXPECT_EQ(l.pToken->GetFieldValueIndex(2), -1);
    pLinked.reset();

    ::setitimer(ITIMER_REAL, &off, nullptr);
    ::sigaction(SIGALRM, &old, nullptr);
    for (const int fd : many) ::close(fd);
}

TEST(Link, LeavesTheStandardDescriptorsAlone) {
    for (const std::vector<int>& closed : {std::vector{0}, {1}, {2}, {0, 1, 2}}) {
        auto pLinked = std::make_unique<Linked>();
        std::vector<int> held;
        for (const int fd : closed) held.push_back(::fcntl(fd, F_DUPFD, 3));
        for (const int fd : closed) ::close(fd);
        pLinked->Start();
        pLinked->pToken->SetFieldValue("stress", 1);
        std::vector<int> ports;  // the viewer's ends may stand there, the engine's must not
        for (const int fd : closed) {
            sockaddr_in peer{};
            socklen_t size = sizeof peer;
            ::getpeername(fd, reinterpret_cast<sockaddr*>(&peer), &size);
            ports.push_back(ntohs(peer.sin_port));
        }
        const std::string last = pLinked->viewer.Take().back();
        const int port = pLinked->viewer.Port();
        pLinked.reset();
        for (std::size_t i = 0; i < closed.size(); ++i) {
            ::dup2(held[i], closed[i]);
            ::close(held[i]);
        }
        EXPECT_THAT(ports, testing::Not(testing::Contains(port)));
        EXPECT_EQ(last, "1004 0  0 0x00000004 0 |a|high|1|0.");
    }
}

TEST(Link, OutlivesWhatItTellsOf) {
    CStreamObj* pHeld = nullptr;
    {
        Linked l;
        Tiers copied{{"p"}};
        ASSERT_TRUE(l.Start());
        CPlexa copy(l.t.plexa);
        EXPECT_FALSE(copy.StartMessageEngine());
        copy.sendMessage("from a copy");
        pHeld = l.pStream->RemoveStreamObj(l.pToken, false);
        *static_cast<CToken*>(pHeld) = CToken(l.t["q"], "z");  // loses its handle
        CVarList list(&l.t.plexa);
        CToken* pOther = copied["p"]->CreateToken("x");
        list.AddTokenPtr("other", &pOther);  // of another container
        CStream::DiscardStreamObj(pOther);
        list.GetVarPtr(0);
    }
    CStream::DiscardStreamObj(pHeld);  // has no handle any more
}

TEST(MessageSocket, BuildsAndReadsPackets) {
    CMessageSocket s;
    char text[8] = "old";
    unsigned long n = 9;
    s << 7ul << "abc";
    s >> n;
    EXPECT_EQ(n, 0u) << "at the end of what was written";
    s >> text;
    EXPECT_STREQ(text, "");
    s.ResetBuff();
    s.Send();  // nothing, to nobody
    EXPECT_FALSE(s.ConnectForRcv()) << "to no address yet";
    CMessageSocket copy(s);
    copy << 1ul;
    s = copy;
    s << 2ul;
    EXPECT_FALSE(copy.Connect());
    FakeViewer viewer;
    ConfigFolder folder(viewer.Config());
    CMessageSocket linked;
    EXPECT_TRUE(linked.Connect());
    linked.ResetBuff();
    std::uint32_t code = 1013;
    linked.AppendPacket(3, &code, 4);
    linked.AppendPacket(8, text, -1);
    linked.AppendPacket(8, nullptr, 3);
    char told[] = "told as it is";
    linked.AppendPacket(8, told, 4);
    linked.Send();
    EXPECT_EQ(viewer.Take().back(), "1013 told");
}

TEST(MessageSocket, KnowsAddresses) {
    char text[17] = "abcdefghijklmnop";
    const unsigned char bytes[] = {192, 168, 0, 1};
    unsigned int address = 0;
    std::memcpy(&address, bytes, 4);
    EXPECT_EQ(CMessageSocket::IPString(address, text, 15), nullptr);
    EXPECT_STREQ(text, "abcdefghijklmnop");
    EXPECT_EQ(CMessageSocket::IPString(address, text, 16), text);
    EXPECT_EQ(std::string(text, 17), std::string("192.168.0.1\0\0\0\0\0\0", 17)) << "cleared";
    sockaddr_in record{};
    record.sin_addr.s_addr = address;
    EXPECT_EQ(CMessageSocket::uGetIPFromSockAddr_In(&record), address);
    EXPECT_EQ(CMessageSocket::uGetIPFromSockAddr_In(nullptr), 0u);
    char name[256];
    EXPECT_EQ(CMessageSocket::GetHostName(name, 256), name);
    EXPECT_EQ(CMessageSocket::GetHostName(name, 1), nullptr);
    EXPECT_EQ(CMessageSocket::GetHostName(nullptr, 9), nullptr);
    int nAddresses = 0;
    if (const hostent* pHost = ::gethostbyname(name)) {
        while (pHost->h_addr_list[nAddresses] != nullptr) ++nAddresses;
    }
    EXPECT_EQ(CMessageSocket::GetNumAddresses(), nAddresses);
    EXPECT_EQ(nAddresses > 0, CMessageSocket::uGetLocalIP() != 0);
    EXPECT_EQ(CMessageSocket::InitSockets_1_1(), 1);
    CMessageSocket::RemoveSockets();
    const char* localhost = CMessageSocket::GetHostName(htonl(INADDR_LOOPBACK));
    EXPECT_TRUE(localhost == nullptr || *localhost != '\0');
}

}  // namespace
