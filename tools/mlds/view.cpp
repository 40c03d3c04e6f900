// mlds view: rules at work, in a viewer's page.
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <iostream>

#include "commands.h"
#include "inputs.h"
#include "mlds/rules/observer.h"
#include "mlds/rules/rulehost.h"
#include "program.h"
#include "rulefile.h"
#include "viewerprocess.h"

namespace mlds_program {

namespace {

using mlds::rules::Rule;

// How often the viewer is asked what it wants while nobody presses a key, in milliseconds.
constexpr int kRound = 50;

// Waits for Enter, and lets the viewer look around meanwhile.
class Keys {
public:
    Keys(CPlexa& plexa, int descriptor) : m_plexa(plexa), m_descriptor(descriptor) {}

    /// The line that was typed; false where no more can come.
    bool WaitForLine(std::string& line) {
        while (m_typed.find('\n') == std::string::npos) {
            m_plexa.ProcessRecvMsg();
            pollfd keys{m_descriptor, POLLIN, 0};
            if (m_descriptor < 0) return false;
            if (::poll(&keys, 1, kRound) <= 0) continue;
            char bytes[256];
            const ssize_t n = ::read(m_descriptor, bytes, sizeof bytes);
            if (n <= 0) return false;
            m_typed.append(bytes, static_cast<std::size_t>(n));
        }
        line = m_typed.substr(0, m_typed.find('\n'));
        m_typed.erase(0, line.size() + 1);
        return true;
    }

private:
    CPlexa& m_plexa;
    int m_descriptor;
    std::string m_typed;
};

// Tells the viewer which rule has changed something, and stops there if that is wanted.
class Watch : public mlds::rules::RuleObserver {
public:
    Watch(mlds::RuleHost& host, Keys& keys, bool bStep)
        : m_host(host), m_keys(keys), m_bStep(bStep) {
        m_host.SetObserver(this);
    }
    ~Watch() override { m_host.SetObserver(nullptr); }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

    void Applied(const Rule& rule, CSyncMark*, CSyncMark*) override {
        const std::string text = m_host.rules().sources().At(rule.span.file).name() + ':' +
                                 std::to_string(rule.span.line) + ' ' + rule.text;
        m_host.plexa().sendMessage(text.c_str());
        m_host.plexa().ProcessRecvMsg();
        if (!m_bStep) return;
        std::cerr << text << "  [Enter: next, c: go on]" << std::endl;
        std::string line;
        if (!m_keys.WaitForLine(line) || line.starts_with('c')) m_bStep = false;
    }

private:
    mlds::RuleHost& m_host;
    Keys& m_keys;
    bool m_bStep;
};

bool ReadsStandardInput(const ViewOptions& options) {
    return options.files.empty() || std::ranges::find(options.files, "-") != options.files.end();
}

bool WatchAll(mlds::RuleHost& host, const ViewOptions& options, Keys& keys) {
    Inputs inputs(options.files);
    const mlds::rules::TierId shown = host.rules().model().shown;
    Watch watch(host, keys, options.bStep);
    bool bDone = true;
    for (Utterance line; inputs.Next(line);) {
        const mlds::RunOutcome outcome = host.Run(line.text);
        for (const mlds::rules::TextFault& fault : outcome.faults) {
            std::cerr << line.place() << ':' << fault.column << ": warning: " << fault.what << '\n';
        }
        bDone = bDone && outcome.bDone;
        if (shown != mlds::rules::kNoTier) std::cout << host.Shown(shown) << std::endl;
    }
    return bDone && inputs.ok();
}

}  // namespace

int View(const ViewOptions& options) {
    const std::shared_ptr<const mlds::RuleSet> pRules = ReadRules(options.rules);
    if (!pRules) return kBadUse;
    // Where the text comes from standard input, keys come from the terminal.
    const int keysFrom =
        ReadsStandardInput(options) ? ::open("/dev/tty", O_RDONLY | O_CLOEXEC) : STDIN_FILENO;
    if (options.bStep && keysFrom < 0) {
        Complain("--step waits for keys, and standard input is the text; name a file");
        return kBadUse;
    }
    mlds::RuleHost host(pRules);
    ViewerProcess viewer;
    if (!viewer.Start(host.plexa())) return kFailed;
    std::cerr << "Open " << viewer.page() << " in a browser"
              << (options.bStep ? ", then press Enter for every step." : ".") << std::endl;
    Keys keys(host.plexa(), keysFrom);
    std::string line;
    if (options.bStep) keys.WaitForLine(line);
    const bool bDone = WatchAll(host, options, keys);
    std::cerr << "The page stays until you press Enter." << std::endl;
    keys.WaitForLine(line);
    host.plexa().StopMessageEngine();
    return FlushOutput() && bDone ? kDone : kFailed;
}

}  // namespace mlds_program
