// Messages to and from the viewer. There is no link yet: nobody receives, nothing is sent.
#include "viewer/report.h"

void mlds::ReportVariable(CPlexa*, int, CVarList*, int) {}

bool CPlexa::StartMessageEngine() {
    return m_socket.Connect();
}

void CPlexa::StopMessageEngine() {}

void CPlexa::DelayMessageDisplay(bool bDelay) {
    constexpr int kDisplayNow = 1002;
    m_bDelayDisplay = bDelay;
    if (!bDelay) sendMessage(kDisplayNow, 0);
}

void CPlexa::sendMessage(int, std::intptr_t) {}

void CPlexa::sendMessage(const char* text) {
    constexpr int kText = 1013;
    sendMessage(kText, reinterpret_cast<std::intptr_t>(text));
}

void CPlexa::sendEntirePlexaObj(bool) {}

void CPlexa::ProcessRecvMsg() {}
