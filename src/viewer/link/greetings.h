// What a connection to the viewer says first, behind a 1.
#ifndef MLDS_VIEWER_LINK_GREETINGS_H
#define MLDS_VIEWER_LINK_GREETINGS_H

namespace mlds {

enum GreetingCode {
    greetNotifications = 2000,  // messages come on this connection
    greetRequests = 2001        // requests are taken from this one
};

}  // namespace mlds

#endif
