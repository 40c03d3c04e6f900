// Starting mlds-viewer, and connecting to it.
#include "viewerprocess.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>

#include "program.h"

extern char** environ;

namespace mlds_program {

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

// A machine under load needs a while to start a program; nobody waits longer.
constexpr std::chrono::seconds kLongestStart{20};

std::string ViewerProgram() {
    std::error_code error;
    const fs::path beside = fs::read_symlink("/proc/self/exe", error).parent_path() / "mlds-viewer";
    return fs::exists(beside, error) ? beside.string() : "mlds-viewer";
}

// What follows a label in the lines that the viewer says; empty if it has not said it yet.
std::string Said(const std::string& text, const std::string& label) {
    const std::size_t at = text.find(label);
    const std::size_t end = at == std::string::npos ? at : text.find('\n', at);
    if (end == std::string::npos) return "";
    return text.substr(at + label.size(), end - at - label.size());
}

// The library reads its viewer's place from a file in the current folder, so that there is one for
// a moment.
class FolderForConfiguration {
public:
    FolderForConfiguration() : m_before(fs::current_path()) {
        std::string pattern = (fs::temp_directory_path() / "mlds-view-XXXXXX").string();
        if (::mkdtemp(pattern.data()) != nullptr) m_folder = pattern;
    }
    ~FolderForConfiguration() {
        std::error_code ignored;
        fs::current_path(m_before, ignored);
        if (!m_folder.empty()) fs::remove_all(m_folder, ignored);
    }
    FolderForConfiguration(const FolderForConfiguration&) = delete;
    FolderForConfiguration& operator=(const FolderForConfiguration&) = delete;

    bool Write(const std::string& host, const std::string& port) {
        if (m_folder.empty()) return false;
        std::error_code error;
        fs::current_path(m_folder, error);
        std::ofstream file("plexaview.cfg");
        file << "host = " << host << "\nport = " << port << '\n';
        return !error && static_cast<bool>(file.flush());
    }

private:
    fs::path m_before;
    fs::path m_folder;
};

}  // namespace

ViewerProcess::~ViewerProcess() {
    if (m_process <= 0) return;
    ::kill(m_process, SIGTERM);
    ::waitpid(m_process, nullptr, 0);
}

bool ViewerProcess::Launch(int* pOutput) {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) {
        Complain("cannot start a viewer: " + Reason());
        return false;
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    // It would otherwise take the keys that are pressed for us.
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    std::string program = ViewerProgram();
    std::string port = "--port";
    std::string webPort = "--web-port";
    std::string any = "0";
    std::string quiet = "--quiet";
    char* arguments[] = {program.data(), port.data(),  any.data(), webPort.data(),
                         any.data(),     quiet.data(), nullptr};
    const int fault =
        ::posix_spawnp(&m_process, program.c_str(), &actions, nullptr, arguments, environ);
    posix_spawn_file_actions_destroy(&actions);
    ::close(ends[1]);
    if (fault != 0) {
        m_process = -1;
        ::close(ends[0]);
        errno = fault;
        Complain("cannot start " + program + ": " + Reason());
        return false;
    }
    *pOutput = ends[0];
    return true;
}

bool ViewerProcess::ReadAddresses(int output) {
    const Clock::time_point end = Clock::now() + kLongestStart;
    std::string said;
    while (m_page.empty() || m_engines.empty()) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
        pollfd ready{output, POLLIN, 0};
        char bytes[512];
        const bool bReady = left > 0 && ::poll(&ready, 1, static_cast<int>(left)) > 0;
        const ssize_t n = bReady ? ::read(output, bytes, sizeof bytes) : 0;
        if (n <= 0) {
            Complain("the viewer does not start" + (said.empty() ? "" : ": " + said));
            return false;
        }
        said.append(bytes, static_cast<std::size_t>(n));
        m_page = Said(said, "page: ");
        m_engines = Said(said, "engines: ");
    }
    return true;
}

bool ViewerProcess::Connect(CPlexa& plexa) {
    const std::size_t colon = m_engines.rfind(':');
    FolderForConfiguration folder;
    const bool bThere = colon != std::string::npos &&
                        folder.Write(m_engines.substr(0, colon), m_engines.substr(colon + 1));
    if (bThere && plexa.StartMessageEngine()) return true;
    Complain("cannot connect to the viewer that was started");
    return false;
}

bool ViewerProcess::Start(CPlexa& plexa) {
    int output = -1;
    if (!Launch(&output)) return false;
    const bool bStarted = ReadAddresses(output) && Connect(plexa);
    // The viewer is quiet from here on; should it say something, nobody has to read it.
    if (!bStarted) ::close(output);
    return bStarted;
}

}  // namespace mlds_program
