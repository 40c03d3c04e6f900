// Reports of changes to the viewer: nothing but one test while none is connected.
#ifndef MLDS_VIEWER_REPORT_H
#define MLDS_VIEWER_REPORT_H

#include "internals.h"
#include "viewer/codes.h"

namespace mlds {

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
