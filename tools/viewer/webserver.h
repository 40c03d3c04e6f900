// The page, and what it asks for.
#ifndef MLDS_VIEWER_TOOL_WEBSERVER_H
#define MLDS_VIEWER_TOOL_WEBSERVER_H

#include <atomic>
#include <memory>
#include <thread>

#include "viewer.h"

namespace mlds_viewer {

class PatientServer;

/// Serves the page from threads of its own. Requests that do not come from the page are refused.
class WebServer {
public:
    /// Port 0 takes any that is free. Refers to the viewer. Throws std::runtime_error.
    WebServer(Viewer& viewer, const std::string& host, int port);
    WebServer(const WebServer&) = delete;
    WebServer& operator=(const WebServer&) = delete;
    ~WebServer();

    int port() const { return m_port; }

private:
    void AddFiles();
    void AddEvents();
    void AddQuestions();
    void AddWishes();

    Viewer& m_viewer;
    std::unique_ptr<PatientServer> m_pServer;
    std::atomic<bool> m_bEnding = false;
    std::atomic<int> m_nListeners = 0;
    bool m_bLoopback;
    int m_port;
    std::thread m_thread;
};

/// True for a host, as a Host header names it, that no foreign page can stand for: an address, or
/// this machine's own name for itself. Names can be made to lead anywhere.
bool IsOwnHost(const std::string& header, bool bLoopbackOnly);

}  // namespace mlds_viewer

#endif
