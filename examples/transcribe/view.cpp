// Letting a viewer watch.
#include "view.h"

#include <poll.h>
#include <unistd.h>

#include <iostream>
#include <stdexcept>

namespace transcribe {

namespace {

// How often the viewer is asked while nobody presses a key, in milliseconds.
constexpr int kRound = 50;

}  // namespace

View::View(CPlexa& plexa, bool bStep, int keys) : m_plexa(plexa), m_bStep(bStep), m_keys(keys) {
    if (plexa.StartMessageEngine()) return;
    throw std::runtime_error(
        "no viewer answers, or it already serves another engine: start mlds-viewer first, and if "
        "it listens elsewhere than on 127.0.0.1:4801, say where in plexaview.cfg");
}

void View::Pause(const std::string& done) {
    Poll();
    if (!m_bStep) return;
    std::cout.flush();
    std::cerr << done << "  [Enter: next, c: go on]" << std::endl;
    while (m_bStep && !HasLine()) Poll();
    if (m_typed.starts_with('c')) m_bStep = false;
    m_typed.erase(0, m_typed.find('\n') + 1);
}

// Waits a moment for a whole line. Where no more keys can come there are no more steps.
bool View::HasLine() {
    if (m_typed.find('\n') != std::string::npos) return true;
    pollfd keys{m_keys, POLLIN, 0};
    if (::poll(&keys, 1, kRound) <= 0) return false;
    char bytes[256];
    const ssize_t n = ::read(m_keys, bytes, sizeof bytes);
    if (n > 0) m_typed.append(bytes, static_cast<std::size_t>(n));
    if (n == 0) m_bStep = false;
    return m_typed.find('\n') != std::string::npos;
}

}  // namespace transcribe
