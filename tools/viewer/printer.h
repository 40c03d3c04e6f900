// Standard output that nobody has to wait for.
#ifndef MLDS_VIEWER_TOOL_PRINTER_H
#define MLDS_VIEWER_TOOL_PRINTER_H

#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>

namespace mlds_viewer {

/// Prints from a thread of its own: an engine waits for its acknowledgements, and must not wait for
/// somebody who reads slowly, or not at all. What has piled up too high is left out, which is said.
class Printer {
public:
    Printer();
    Printer(const Printer&) = delete;
    Printer& operator=(const Printer&) = delete;
    /// Waits a second at most for what is still to be printed.
    ~Printer();

    void Print(const std::string& text);

private:
    struct Shared {
        std::mutex mutex;
        std::condition_variable changed;
        std::string waiting;
        bool bCut = false;
        bool bIdle = true;
    };
    static void Run(std::shared_ptr<Shared> pShared);

    std::shared_ptr<Shared> m_pShared;  // with the thread, which may outlive this
};

}  // namespace mlds_viewer

#endif
