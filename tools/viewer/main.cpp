// mlds-viewer: shows what an engine's streams hold while its rules work on them.
#include <fcntl.h>
#include <getopt.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <charconv>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <system_error>

#include "commands.h"
#include "engineserver.h"
#include "mlds/version.h"
#include "printer.h"
#include "report/messages.h"
#include "terminal.h"
#include "webserver.h"

namespace {

using namespace mlds_viewer;

constexpr const char* kUsage = R"(usage: mlds-viewer [OPTION...]

Waits for an engine that uses mlds, mirrors its streams, and shows them as text and in a browser.
Commands on standard input: try help.

  -H, --host ADDRESS      listen for engines on that address (127.0.0.1)
  -p, --port PORT         and that port (4801); 0 takes any that is free
  -W, --web-host ADDRESS  serve the page on that address (127.0.0.1)
  -w, --web-port PORT     and that port (4802); 0 takes any that is free
  -n, --no-web            serve no page
      --public            allow addresses that other machines reach: whoever reaches them sees
                          everything and can set fields
  -l, --log               print every message in words
  -q, --quiet             do not print the streams when they change
  -h, --help              print this help and exit
      --version           print the version and exit

The exit status is 0 after quit, 1 if it cannot listen, and 2 if the command line was wrong.
)";

constexpr int kBadUse = 2;
// Changes outside of a bulk edit come one by one: they are drawn when nothing more comes.
constexpr int kCalm = 50;
constexpr int kRound = 1000;

struct Options {
    std::string host = "127.0.0.1";
    int port = 4801;
    std::string webHost = "127.0.0.1";
    int webPort = 4802;
    bool bWeb = true;
    bool bPublic = false;
    bool bLog = false;
    bool bQuiet = false;
    bool bHelp = false;
    bool bVersion = false;
};

std::size_t Columns() {
    winsize size{};
    if (::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) return size.ws_col;
    return 100;
}

// Prints what is new in the journal, and the streams when they are fit to be seen.
class Screen {
public:
    Screen(Viewer& viewer, Printer& printer, const Options& options)
        : m_viewer(viewer),
          m_printer(printer),
          m_bLog(options.bLog),
          m_bTiers(!options.bQuiet),
          m_bClear(!options.bLog && ::isatty(STDOUT_FILENO) == 1) {}

    void Update(bool bCalm) {
        const Status status = m_viewer.status();
        bool bComplete = false;
        for (const EntryPtr& pEntry : m_viewer.Entries(m_nSeen + 1, status.last - m_nSeen)) {
            const int code = pEntry->message.code;
            if (m_bLog || code < 0) m_printer.Print(EntryText(*pEntry));
            bComplete |= code == mlds::msgDisplayNow || code == Journal::kDisconnected;
        }
        m_nSeen = status.last;
        if (m_bTiers && m_nDrawn < status.shown && (bCalm || bComplete)) {
            m_nDrawn = status.shown;
            const std::string text = TiersText(*m_viewer.StructureAt(m_nDrawn), Columns());
            if (text != m_drawn && !text.empty()) {
                m_printer.Print((m_bClear ? "\033[H\033[2J" : "") + text + '\n');
            }
            m_drawn = text;
        }
    }
    /// Somebody types: what is printed stays from now on.
    void KeepAll() { m_bClear = false; }
    bool isDirty() const { return m_nDrawn < m_viewer.status().shown; }

private:
    Viewer& m_viewer;
    Printer& m_printer;
    bool m_bLog;
    bool m_bTiers;
    bool m_bClear;
    std::size_t m_nSeen = 0;
    std::size_t m_nDrawn = 0;
    std::string m_drawn;
};

// Lines of standard input, as they come.
class Input {
public:
    bool isOpen() const { return m_bOpen; }
    /// False when quit was among them. To be called when there is something to read.
    bool Read(Viewer& viewer, Printer& printer) {
        char bytes[4096];
        const ssize_t n = ::read(STDIN_FILENO, bytes, sizeof bytes);
        if (n < 0 && (errno == EAGAIN || errno == EINTR)) return true;
        m_bOpen = n > 0;
        if (n > 0) m_text.append(bytes, static_cast<std::size_t>(n));
        for (std::size_t end; (end = m_text.find('\n')) != std::string::npos;) {
            const auto answer = CarryOut(m_text.substr(0, end), viewer, Columns());
            m_text.erase(0, end + 1);
            if (!answer) return false;
            printer.Print(*answer);
        }
        return true;
    }

private:
    bool m_bOpen = true;
    std::string m_text;
};

// Standard streams that the caller closed would be taken for the sockets that are opened next.
void OpenStandardStreams() {
    for (int fd = ::open("/dev/null", O_RDWR); fd >= 0; fd = ::dup(fd)) {
        if (fd > STDERR_FILENO) {
            ::close(fd);
            return;
        }
    }
}

[[noreturn]] void Run(const Options& options) {
    Viewer viewer;
    Socket listener = Listen(options.host, options.port);
    std::cout << "engines: " << options.host << ':' << PortOf(listener) << std::endl;
    EngineServer engines(std::move(listener), viewer);
    std::unique_ptr<WebServer> pWeb;
    if (options.bWeb) {
        pWeb = std::make_unique<WebServer>(viewer, options.webHost, options.webPort);
        std::cout << "page: http://" << options.webHost << ':' << pWeb->port() << '/' << std::endl;
    }
    auto pPrinter = std::make_unique<Printer>();
    Screen screen(viewer, *pPrinter, options);
    Input input;
    for (std::vector<pollfd> polled;; polled.clear()) {
        polled.push_back({input.isOpen() ? STDIN_FILENO : -1, POLLIN, 0});
        polled.push_back({viewer.wakeUp(), POLLIN, 0});
        engines.AddTo(polled);
        const int n = ::poll(polled.data(), polled.size(), screen.isDirty() ? kCalm : kRound);
        if (n < 0 && errno != EINTR) {
            throw std::system_error(errno, std::generic_category(), "poll");
        }
        engines.Serve();
        screen.Update(n == 0);
        if (n <= 0 || polled[0].revents == 0) continue;
        if (!input.Read(viewer, *pPrinter)) break;
        screen.KeepAll();
    }
    engines.Close();
    pPrinter.reset();
    std::_Exit(0);  // threads that serve a slow browser are not waited for
}

bool ReadPort(const char* text, int& port) {
    const char* pEnd = text + std::char_traits<char>::length(text);
    const auto [p, error] = std::from_chars(text, pEnd, port);
    if (error == std::errc{} && p == pEnd && port >= 0 && port <= 65535) return true;
    std::cerr << "mlds-viewer: '" << text << "' is no port: a number from 0 to 65535\n";
    return false;
}

bool IsAllowed(const std::string& host, bool bPublic) {
    if (!IsAddress(host)) {
        std::cerr << "mlds-viewer: '" << host << "' is no IPv4 address\n";
        return false;
    }
    if (bPublic || IsLoopback(host)) return true;
    std::cerr << "mlds-viewer: other machines could reach " << host << "; --public allows that\n";
    return false;
}

// False if the command line is wrong, which is then said.
bool ReadOptions(int argc, char** argv, Options& read) {
    enum { kPublic = 1000, kVersion };
    const option options[] = {{"host", required_argument, nullptr, 'H'},
                              {"port", required_argument, nullptr, 'p'},
                              {"web-host", required_argument, nullptr, 'W'},
                              {"web-port", required_argument, nullptr, 'w'},
                              {"no-web", no_argument, nullptr, 'n'},
                              {"public", no_argument, nullptr, kPublic},
                              {"log", no_argument, nullptr, 'l'},
                              {"quiet", no_argument, nullptr, 'q'},
                              {"help", no_argument, nullptr, 'h'},
                              {"version", no_argument, nullptr, kVersion},
                              {}};
    for (int c = 0; (c = getopt_long(argc, argv, "H:p:W:w:nlqh", options, nullptr)) != -1;) {
        switch (c) {
            case 'H': read.host = optarg; break;
            case 'p':
                if (!ReadPort(optarg, read.port)) return false;
                break;
            case 'W': read.webHost = optarg; break;
            case 'w':
                if (!ReadPort(optarg, read.webPort)) return false;
                break;
            case 'n': read.bWeb = false; break;
            case kPublic: read.bPublic = true; break;
            case 'l': read.bLog = true; break;
            case 'q': read.bQuiet = true; break;
            case 'h': read.bHelp = true; return true;
            case kVersion: read.bVersion = true; return true;
            default: return false;
        }
    }
    if (optind < argc) {
        std::cerr << "mlds-viewer: '" << argv[optind] << "' is not expected\n";
        return false;
    }
    return IsAllowed(read.host, read.bPublic) && IsAllowed(read.webHost, read.bPublic);
}

}  // namespace

int main(int argc, char** argv) try {
    OpenStandardStreams();
    Options options;
    if (!ReadOptions(argc, argv, options)) {
        std::cerr << "Try 'mlds-viewer --help'.\n";
        return kBadUse;
    }
    if (options.bHelp) {
        std::cout << kUsage;
        return 0;
    }
    if (options.bVersion) {
        std::cout << "mlds-viewer " MLDS_VERSION "\n";
        return 0;
    }
    // Nobody reads what is printed any more: the page may still be looked at.
    std::signal(SIGPIPE, SIG_IGN);
    Run(options);
} catch (const std::exception& e) {
    std::cerr << "mlds-viewer: " << e.what() << '\n';
    return 1;
}
