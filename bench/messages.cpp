// Messages to a viewer over the loopback interface, beside a bare ping-pong of packets of the same
// sizes; and what a report costs while there is no viewer.
#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <thread>

#include "compare.h"
#include "tiers.h"

using bench::Compare;

namespace {

// The time by the clock on the wall: both sides of a connection have their share in it.
template <typename Work>
double WallTime(Work work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    const std::chrono::duration<double, std::nano> time = std::chrono::steady_clock::now() - start;
    return time.count();
}

int NoDelay(int s) {
    const int on = 1;
    ::setsockopt(s, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    return s;
}

// Answers whatever comes over any of its connections with one int item.
class Answerer {
public:
    Answerer() {
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto* p = reinterpret_cast<sockaddr*>(&address);
        if (::bind(m_listener, p, size) != 0 || ::listen(m_listener, 8) != 0 ||
            ::getsockname(m_listener, p, &size) != 0) {
            throw std::runtime_error("cannot listen");
        }
        m_thread = std::thread([this] {
            for (int s = 0; (s = ::accept(m_listener, nullptr, nullptr)) >= 0;) {
                m_threads.emplace_back(Answer, NoDelay(s));
            }
        });
    }
    ~Answerer() {
        ::shutdown(m_listener, SHUT_RDWR);
        m_thread.join();
        for (std::thread& thread : m_threads) thread.join();
        ::close(m_listener);
    }

    sockaddr_in address{};

private:
    static void Answer(int s) {
        char bytes[20000];
        const char ack[8] = {0, 0, 0, 3, 0, 0, 0, 0};
        while (::recv(s, bytes, sizeof bytes, 0) > 0) ::send(s, ack, sizeof ack, MSG_NOSIGNAL);
        ::close(s);
    }

    int m_listener = ::socket(AF_INET, SOCK_STREAM, 0);
    std::thread m_thread;
    std::vector<std::thread> m_threads;
};

// A folder for the file that says where the viewer is.
struct Folder {
    explicit Folder(int port) {
        char name[] = "/tmp/mlds-bench-XXXXXX";
        if (::mkdtemp(name) == nullptr) throw std::runtime_error("no folder");
        path = name;
        std::filesystem::current_path(path);
        std::ofstream("plexaview.cfg") << "port = " << port << '\n';
    }
    ~Folder() {
        std::filesystem::current_path(old);
        std::filesystem::remove_all(path);
    }
    std::filesystem::path old = std::filesystem::current_path(), path;
};

struct LinkCase {
    LinkCase() {
        const auto* p = reinterpret_cast<const sockaddr*>(&answerer.address);
        if (::connect(s, p, sizeof answerer.address) != 0)
            throw std::runtime_error("no connection");
    }
    ~LinkCase() { ::close(s); }
    void PingPong(std::size_t n) {
        char ack[64];
        ::send(s, bytes.data(), n, MSG_NOSIGNAL);
        ::recv(s, ack, sizeof ack, 0);
    }

    Answerer answerer;
    Folder folder{ntohs(answerer.address.sin_port)};
    int s = NoDelay(::socket(AF_INET, SOCK_STREAM, 0));
    std::string bytes = std::string(16384, 'x');
};

// Per message: the change of a token's field, a text of 40 characters.
void MessageOfChange(benchmark::State& state) {
    LinkCase c;
    bench::TiedTiers tiers(3, 100);
    if (!tiers.phones.plexa.StartMessageEngine()) return state.SkipWithError("no viewer");
    CToken* pToken = tiers.phoneMarks[3]->GetNextToken();
    Compare(
        state, 100,
        [&] {
            return WallTime([&] {
                for (int i = 0; i < 100; ++i) pToken->SetFieldValue(1, i & 1);
            });
        },
        [&] {
            return WallTime([&] {
                for (int i = 0; i < 100; ++i) c.PingPong(16 + 45);
            });
        });
    tiers.phones.plexa.StopMessageEngine();
}
BENCHMARK(MessageOfChange)->UseRealTime();

// Per message: everything that 50 streams with 10,000 objects hold.
void FullDump(benchmark::State& state) {
    LinkCase c;
    bench::TiedTiers tiers(50, 540);
    CPlexa& plexa = tiers.phones.plexa;
    std::int64_t nMessages = 4;
    for (int i = 0; i < plexa.GetNumStreams(); ++i) {
        CStream* pStream = plexa.pStream(i);
        nMessages += 3 + pStream->GetNumSyncMarks() + pStream->GetNumTokens();
    }
    if (!plexa.StartMessageEngine()) return state.SkipWithError("no viewer");
    state.counters["messages"] = static_cast<double>(nMessages);
    Compare(
        state, nMessages, [&] { return WallTime([&] { plexa.sendEntirePlexaObj(true); }); },
        [&] {
            return WallTime([&] {
                for (std::int64_t i = 0; i < nMessages; ++i) c.PingPong(16 + 100);
            });
        });
    plexa.StopMessageEngine();
}
BENCHMARK(FullDump)->UseRealTime();

// Per report, while no viewer is connected; by hand, two calls of the library that do nothing.
void ReportToNobody(benchmark::State& state) {
    CPlexa plexa(nullptr);
    Compare(
        state, 1000,
        [&] {
            for (int i = 0; i < 1000; ++i) plexa.sendMessage(1002, 0);
        },
        [&] {
            for (int i = 0; i < 1000; ++i) {
                benchmark::DoNotOptimize(plexa.getEngine());
                benchmark::DoNotOptimize(plexa.GetLanguage());
            }
        });
}
BENCHMARK(ReportToNobody);

}  // namespace
