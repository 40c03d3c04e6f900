// What the library tells a viewer: one call for each thing that can happen.
//
// This folder lies below all that reports and below all that knows what a viewer is told. While no
// viewer is connected a report is one test of a flag; only then is the link called, which reads the
// streams, words the message, and waits for the viewer.
#ifndef MLDS_REPORT_REPORT_H
#define MLDS_REPORT_REPORT_H

#include "internals.h"
#include "report/messages.h"

namespace mlds {

/// The other end of the reports, implemented by the link. Called only while a viewer is connected;
/// a message that cannot be made for want of memory ends the link, so that no viewer shows what is
/// not so.
struct ViewerReports {
    static void Inserted(CPlexa* pPlexa, CStreamObj* p);
    static void TokenChanged(CPlexa* pPlexa, CToken* p);
    static void Removed(CPlexa* pPlexa, CStreamObj* p);
    static void Stream(CPlexa* pPlexa, CStream* pStream);
    static void ListMade(CPlexa* pPlexa, CVarList* pList);
    static void ListGone(CPlexa* pPlexa, CVarList* pList);
    static void Variable(CPlexa* pPlexa, int code, CVarList* pList, int i);
};

/// An object was linked into a stream.
inline void ReportInserted(CPlexa* pPlexa, CStreamObj* p) {
    if (Internals::HasViewer(pPlexa)) ViewerReports::Inserted(pPlexa, p);
}

/// A value of a token was set.
inline void ReportTokenChanged(CPlexa* pPlexa, CToken* p) {
    if (Internals::HasViewer(pPlexa)) ViewerReports::TokenChanged(pPlexa, p);
}

/// An object, which is still linked, is about to leave its stream.
inline void ReportRemoved(CPlexa* pPlexa, CStreamObj* p) {
    if (Internals::HasViewer(pPlexa)) ViewerReports::Removed(pPlexa, p);
}

/// A stream exists: what it and its fields are called.
inline void ReportStream(CPlexa* pPlexa, CStream* pStream) {
    if (Internals::HasViewer(pPlexa)) ViewerReports::Stream(pPlexa, pStream);
}

/// A variable list was made, and is about to go.
inline void ReportListMade(CPlexa* pPlexa, CVarList* pList) {
    if (Internals::HasViewer(pPlexa)) ViewerReports::ListMade(pPlexa, pList);
}

inline void ReportListGone(CPlexa* pPlexa, CVarList* pList) {
    if (Internals::HasViewer(pPlexa)) ViewerReports::ListGone(pPlexa, pList);
}

/// Variable i of a list, under the code of what happened to it. Codes of messages about something
/// else than variables report nothing of it.
inline void ReportVariable(CPlexa* pPlexa, int code, CVarList* pList, int i) {
    if (Internals::HasViewer(pPlexa)) ViewerReports::Variable(pPlexa, code, pList, i);
}

/// The container was initialised or emptied.
inline void ReportReset(CPlexa* pPlexa) {
    if (Internals::HasViewer(pPlexa)) pPlexa->sendMessage(kResetText);
}

/// For objects and lists that go for good: their handles mean nothing from then on.
void ForgetHandle(CStreamObj* p);
void ForgetHandle(const CPlexa* pPlexa, const void* p);

}  // namespace mlds

#endif
