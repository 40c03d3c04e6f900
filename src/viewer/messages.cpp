// Messages to and from the viewer. There is no link yet: nobody receives, nothing is sent.
#include "viewer/report.h"

void mlds::ReportVariable(CPlexa*, int, CVarList*, int) {}

bool CPlexa::StartMessageEngine() {
    return m_socket.Connect();
}

void CPlexa::StopMessageEngine() {}

void CPlexa::DelayMessageDisplay(bool bDelay) {
    m_bDelayDisplay = bDelay;
    if (!bDelay) sendMessage(mlds::msgDisplayNow, 0);
}

void CPlexa::sendMessage(int, std::intptr_t) {}

void CPlexa::sendMessage(const char* text) {
    sendMessage(mlds::msgText, reinterpret_cast<std::intptr_t>(text));
}

void CPlexa::sendEntirePlexaObj(bool) {}

void CPlexa::ProcessRecvMsg() {}
