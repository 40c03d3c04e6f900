// Letting a viewer watch.
#ifndef TRANSCRIBE_VIEW_H
#define TRANSCRIBE_VIEW_H

#include <string>

#include "mlds/mlds.h"

namespace transcribe {

/// The link to a running viewer, and pauses in which one can look around.
class View {
public:
    /// Connects, and reports everything. With `bStep`, work stops at every Pause() until somebody
    /// presses Enter; bytes for that come from the given descriptor. Refers to the container.
    /// Throws std::runtime_error if no viewer answers.
    View(CPlexa& plexa, bool bStep, int keys);

    /// Carries out what the viewer asked for. To be called between rules.
    void Poll() { m_plexa.ProcessRecvMsg(); }
    /// Says what has been done; in steps, waits, and goes on carrying out what the viewer asks for.
    void Pause(const std::string& done);

private:
    bool HasLine();

    CPlexa& m_plexa;
    bool m_bStep;
    int m_keys;
    std::string m_typed;
};

}  // namespace transcribe

#endif
