// The container: making, destroying, resetting, and what it keeps for host and rules.
#include "mlds/plexa.h"

#include <cstring>
#include <new>
#include <utility>

#include "container/listaccess.h"
#include "internals.h"
#include "mlds/okulog.h"
#include "platform/sockets.h"
#include "report/report.h"

using mlds::Internals;
using mlds::ListAccess;

namespace {

// The lines are part of what hosts read in their logs, and no longer those of this file.
void LogDebug(const char* signature, int line, const char* text) {
    if (okuLog.m_nLevel >= 4) okuLog.logDebug("mlds", signature, "mlds", line, 1, text);
}

}  // namespace

CPlexa::CPlexa(CEngine* pEngine)
    : m_bDelayDisplay(false),
      m_bMessageEngine(true),
      m_pTest(nullptr),
      m_pStreams{},
      m_ranking{},
      m_nRanked(0),
      m_pVarLists{},
      m_nVarLists(0),
      m_nStreams(0),
      m_bUnread(true),
      m_pDefaultTimeStream(nullptr),
      m_pEngine(pEngine),
      m_bAbort(false),
      m_nLanguage(0),
      m_nDialect(0),
      m_nSearchNumber(0),
      m_pMessageBuffer(nullptr),
      m_nMessageCapacity(4096),
      m_pHome(this),
      m_nFenced(0),
      m_ppWorkStack(nullptr),
      m_pFirstVarList(nullptr),
      m_nSearchSteps(UINT64_MAX),
      m_szRefusal(nullptr),
      m_szRefusedPart{},
      m_szLastError{},
      m_nRefusedAt(-1),
      m_nAttempts(0) {
    LogDebug("CPlexa::CPlexa()", 24, "enter");
    m_pTest = new (std::nothrow) CPlexaTest(this);
    WorkStack();
    LogDebug("CPlexa::CPlexa()", 49, "returning");
}

CPlexa::CPlexa(const CPlexa& other)
    : m_pHome(nullptr),
      m_pFirstVarList(nullptr),
      m_nSearchSteps(UINT64_MAX),
      m_szRefusal(nullptr),
      m_nRefusedAt(-1),
      m_nAttempts(0) {
    *this = other;
}

CPlexa& CPlexa::operator=(const CPlexa& other) {
    // An owner keeps what it has: everything in it would be lost.
    if (this == &other || m_pHome == this) return *this;
    LetGoOfVarLists();
    m_bDelayDisplay = other.m_bDelayDisplay;
    m_bMessageEngine = other.m_bMessageEngine;
    m_pTest = other.m_pTest;
    std::memcpy(m_pStreams, other.m_pStreams, sizeof m_pStreams);
    std::memcpy(m_ranking, other.m_ranking, sizeof m_ranking);
    m_nRanked = other.m_nRanked;
    std::memcpy(m_pVarLists, other.m_pVarLists, sizeof m_pVarLists);
    m_nVarLists = other.m_nVarLists;
    m_nStreams = other.m_nStreams;
    m_bUnread = other.m_bUnread;
    m_pDefaultTimeStream = other.m_pDefaultTimeStream;
    m_pEngine = other.m_pEngine;
    m_bAbort = other.m_bAbort;
    m_nLanguage = other.m_nLanguage;
    m_nDialect = other.m_nDialect;
    m_nSearchNumber = other.m_nSearchNumber;
    m_pMessageBuffer = nullptr;
    m_nMessageCapacity = other.m_nMessageCapacity;
    m_pHome = other.m_pHome;
    m_nFenced = other.m_nFenced;
    m_ppWorkStack = other.m_ppWorkStack;
    m_pFirstVarList = nullptr;
    return *this;
}

CPlexa::~CPlexa() {
    LogDebug("CPlexa::~CPlexa()", 57, "enter");
    LetGoOfVarLists();
    if (m_pHome == this) Release();
    LogDebug("CPlexa::~CPlexa()", 68, "returning");
}

// Lists may outlive their container.
void CPlexa::LetGoOfVarLists() {
    while (m_pFirstVarList != nullptr) ListAccess::LetGoOfContainer(m_pFirstVarList);
}

void CPlexa::Release() {
    StopMessageEngine();
    DropMessageBuffer();
    mlds::platform::WSACleanup();
    delete m_pTest;
    m_pTest = nullptr;
    // Emptied before any goes: an object may lie in the chain of another stream than its own.
    for (int i = 0; i < m_nStreams; ++i) m_pStreams[i]->StreamReset();
    for (CStream*& pStream : m_pStreams) {
        if (pStream != nullptr) Internals::Abandon(std::exchange(pStream, nullptr));
    }
    delete[] m_ppWorkStack;
}

void CPlexa::Initialize() {
    for (int i = 1; i < m_nStreams; ++i) {
        Internals::First(m_pStreams[0])->SetToSynchronous(Internals::First(m_pStreams[i]));
        Internals::Last(m_pStreams[0])->SetToSynchronous(Internals::Last(m_pStreams[i]));
    }
    if (m_nStreams > 0) mlds::ReportReset(this);
}

void CPlexa::CPlexaReset() {
    DelayMessageDisplay(true);
    for (int i = 0; i < m_nStreams; ++i) m_pStreams[i]->StreamReset();
    DelayMessageDisplay(false);
    mlds::ReportReset(this);
}

bool CPlexa::SetDefaultTimeStream(CStream* pTimeStream) {
    m_pDefaultTimeStream = pTimeStream;
    return true;
}

CStream* CPlexa::GetDefaultTimeStream() {
    return m_pDefaultTimeStream;
}

void CPlexa::SetLanguage(int language) {
    m_nLanguage = language;
}

int CPlexa::GetLanguage() {
    return m_nLanguage;
}

void CPlexa::SetDialect(int dialect) {
    m_nDialect = dialect;
}

int CPlexa::GetDialect() {
    return m_nDialect;
}

void CPlexa::setAbort(bool bAbort) {
    m_bAbort = bAbort;
}

bool CPlexa::isSynthesisAbort() {
    return m_bAbort;
}

CEngine* CPlexa::getEngine() {
    return m_pEngine;
}

unsigned int CPlexa::incr_SearchNumber() {
    // Wraps to 0, the number of marks that no search has seen.
    return ++m_nSearchNumber;
}

bool CPlexa::Test(const char* name, unsigned char const (*const program)[5], int base) {
    return m_pTest != nullptr && m_pTest->Test(name, program, base);
}

void CPlexa::SetTestObserver(CPlexaTestObserver* pObserver) {
    if (m_pTest != nullptr) m_pTest->SetObserver(pObserver);
}
