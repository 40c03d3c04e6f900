// The numbers that messages and requests begin with.
#ifndef MLDS_VIEWER_CODES_H
#define MLDS_VIEWER_CODES_H

namespace mlds {

/// What a connection says first, behind a 1.
enum GreetingCode {
    greetNotifications = 2000,  // messages come on this connection
    greetRequests = 2001        // requests are taken from this one
};

/// What the viewer is told.
enum MessageCode {
    msgGoodbye = 4,          // the library closes the link
    msgFullDump = 1000,      // everything follows
    msgContentsDump = 1001,  // what the streams hold follows
    msgDisplayNow = 1002,    // a bulk edit is over
    msgInserted = 1003,      // an object was linked into a stream
    msgTokenChanged = 1004,  // a token's fields changed
    msgReserved = 1005,      // of no meaning yet
    msgRemoved = 1006,       // an object left its stream
    msgStream = 1007,        // a stream and its fields
    msgLanguage = 1008,      // language and dialect
    msgListMade = 1009,      // a variable list was made
    msgVarAdded = 1010,      // a variable was declared
    msgVarUsed = 1011,       // a variable was used
    msgListGone = 1012,      // a variable list is gone
    msgText = 1013           // text for the viewer
};

/// What the viewer asks for.
enum RequestCode { reqDisconnect = 4, reqSetField = 1004 };

}  // namespace mlds

#endif
