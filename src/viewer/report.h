// Reports of changes to the viewer: nothing but one test while none is connected.
#ifndef MLDS_VIEWER_REPORT_H
#define MLDS_VIEWER_REPORT_H

#include "internals.h"

namespace mlds {

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

inline void Report(CPlexa* pPlexa, int code, CStreamObj* pObj) {
    if (Internals::HasViewer(pPlexa)) {
        pPlexa->sendMessage(code, reinterpret_cast<std::intptr_t>(pObj));
    }
}

inline void Report(CPlexa* pPlexa, int code, CVarList* pList) {
    if (Internals::HasViewer(pPlexa)) {
        pPlexa->sendMessage(code, reinterpret_cast<std::intptr_t>(pList));
    }
}

/// Reports variable i of a list. Called only while a viewer is connected.
void ReportVariable(CPlexa* pPlexa, int code, CVarList* pList, int i, const char* name);

/// For objects that go for good: their handles mean nothing from then on.
void ForgetHandle(CStreamObj* p);
void ForgetHandle(const CPlexa* pPlexa, const void* p);

}  // namespace mlds

#endif
