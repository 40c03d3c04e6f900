// The connections of browsers: how many there may be of each kind, and how long each may take.
#ifndef MLDS_VIEWER_TOOL_WEBCONNECTIONS_H
#define MLDS_VIEWER_TOOL_WEBCONNECTIONS_H

#include <httplib.h>

#include <deque>
#include <mutex>

namespace mlds_viewer {

/// Connections that keep a thread because the other side does nothing. Where there are too many,
/// the one that has waited for longest is shut down, which ends its waiting: whoever comes next
/// finds a thread.
class WaitingRoom {
public:
    explicit WaitingRoom(std::size_t nPlaces) : m_nPlaces(nPlaces) {}
    void Enter(int socket);
    /// Without effect for a socket that is not inside. Has to come before it is closed.
    void Leave(int socket);

private:
    const std::size_t m_nPlaces;
    std::mutex m_mutex;
    std::deque<int> m_sockets;  // by the time of their coming
};

/// A server that nobody can keep busy by being slow: by connecting and saying nothing, by sending a
/// request bit by bit, or by not taking the answer.
class PatientServer final : public httplib::Server {
public:
    /// The handlers of so many requests may take as long as they like at the same time.
    explicit PatientServer(std::size_t nLong);
    /// Once it is bound: lets many connect at once. The library has the system drop all but five,
    /// who try again after a second.
    void TakeCrowds();

private:
    bool process_and_close_socket(socket_t socket) override;

    WaitingRoom m_silent;  // whose request has not come yet
    WaitingRoom m_slow;    // who do not take what they asked for
};

}  // namespace mlds_viewer

#endif
