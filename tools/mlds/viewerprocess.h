// A viewer of our own: mlds-viewer, started for one run.
#ifndef MLDS_PROGRAM_VIEWERPROCESS_H
#define MLDS_PROGRAM_VIEWERPROCESS_H

#include <sys/types.h>

#include <string>

#include "mlds/mlds.h"

namespace mlds_program {

/// Runs mlds-viewer on ports that are free, as long as this lives.
class ViewerProcess {
public:
    ViewerProcess() = default;
    ~ViewerProcess();
    ViewerProcess(const ViewerProcess&) = delete;
    ViewerProcess& operator=(const ViewerProcess&) = delete;

    /// Starts the viewer that lies beside this program, or else the first in PATH, and connects the
    /// container to it. False if that fails, which is then said.
    bool Start(CPlexa& plexa);
    /// Where the page is, for a browser.
    const std::string& page() const { return m_page; }

private:
    bool Launch(int* pOutput);
    bool ReadAddresses(int output);
    bool Connect(CPlexa& plexa);

    pid_t m_process = -1;
    std::string m_page;
    std::string m_engines;  // ADDRESS:PORT
};

}  // namespace mlds_program

#endif
