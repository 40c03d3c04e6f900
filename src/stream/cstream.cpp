// Streams: making and destroying, names, fields, tokens, counters.
#include <cstring>
#include <new>

#include "mlds/stream.h"
#include "stream/fieldslots.h"
#include "stream/fixedtext.h"
#include "stream/ordernumbering.h"
#include "stream/textbuffer.h"

using mlds::Internals;

CStream::CStream(CPlexa* pPlexa, int index)
    : m_nIndex(index),
      m_pPlexa(pPlexa),
      m_pFirst(nullptr),
      m_pLast(nullptr),
      m_szName{},
      m_pText(new (std::nothrow) char[mlds::kTextStep]{}),
      m_szSyncMark{'|', '\0'},
      m_nTextCapacity(mlds::kTextStep),
      m_nFields(0),
      m_nTokens(0),
      m_nSyncMarks(0),
      m_pFields{},
      m_bQuiet(false),
      m_bFence(false),
      m_bOwner(true),
      m_pNumbering(nullptr),
      m_nDestroyed(0),
      m_nAbsent(0) {
    m_pFirst = new CSyncMark(this);
    m_pLast = new CSyncMark(this);
    if (m_pFirst != nullptr && m_pLast != nullptr) {
        m_pNumbering = new (std::nothrow) mlds::OrderNumbering(m_pFirst, m_pLast);
    }
}

CStream* Internals::NewStream(CPlexa* pPlexa, int index) {
    auto* pStream = new (std::nothrow) CStream(pPlexa, index);
    if (pStream != nullptr && !IsComplete(pStream)) {
        delete pStream;
        return nullptr;
    }
    return pStream;
}

CStream::CStream(const CStream& other) : m_bOwner(false), m_nDestroyed(0), m_nAbsent(0) {
    *this = other;
}

CStream& CStream::operator=(const CStream& other) {
    // A container's own stream keeps what it has: everything in it would be lost.
    if (this == &other || m_bOwner) return *this;
    if (other.m_pNumbering == nullptr) return *this;  // of a container that is gone
    other.m_pNumbering->SettleNow();
    m_nIndex = other.m_nIndex;
    m_pPlexa = other.m_pPlexa;
    m_pFirst = other.m_pFirst;
    m_pLast = other.m_pLast;
    std::memcpy(m_szName, other.m_szName, sizeof m_szName);
    m_pText = other.m_pText;
    std::memcpy(m_szSyncMark, other.m_szSyncMark, sizeof m_szSyncMark);
    m_nTextCapacity = other.m_nTextCapacity;
    m_nFields = other.m_nFields;
    m_nTokens = other.m_nTokens;
    m_nSyncMarks = other.m_nSyncMarks;
    std::memcpy(m_pFields, other.m_pFields, sizeof m_pFields);
    m_bQuiet = other.m_bQuiet;
    m_bFence = other.m_bFence;
    m_pNumbering = other.m_pNumbering;
    return *this;
}

// The stream that chain, fields and text belong to. What is made through a copy is made for that
// one: it must not know a copy that may go at any time.
CStream* CStream::Owner() {
    return Internals::OwnerOf(this);
}

CStream::~CStream() {
    if (m_bOwner) Release();
}

void CStream::Release() {
    if (Internals::IsComplete(this)) StreamReset();
    if (m_pFirst != nullptr) Internals::Destroy(m_pFirst);
    if (m_pLast != nullptr) Internals::Destroy(m_pLast);
    for (int i = 0; i < m_nFields; ++i) delete m_pFields[i];
    delete[] m_pText;
    delete m_pNumbering;
}

// The end of a stream whose container goes. Objects that the host holds still know it.
void CStream::Abandon() {
    Release();
    m_pPlexa = nullptr;
    m_pFirst = nullptr;
    m_pLast = nullptr;
    m_pText = nullptr;
    std::memset(m_pFields, 0, sizeof m_pFields);
    m_nFields = 0;
    m_pNumbering = nullptr;
    if (m_nAbsent == 0) delete this;
}

void CStream::StreamReset() {
    if (m_pFirst == nullptr) return;
    while (Internals::Next(m_pFirst) != m_pLast) {
        RemoveStreamObj(Internals::Next(m_pFirst), true);
    }
    Owner()->m_pText[0] = '\0';
}

void CStream::SetStreamName(const char* name) {
    mlds::SetFixedText(m_szName, name);
}

char* CStream::GetStreamName() {
    return m_szName;
}

CPlexa* CStream::pGetStreamPlexa() {
    return m_pPlexa;
}

CField* CStream::AddField(const char* name) {
    if (name == nullptr || m_nFields == kMaxFields || !m_bOwner || m_pPlexa == nullptr) {
        return nullptr;
    }
    auto* pField = new (std::nothrow) CField(this);
    if (pField == nullptr) return nullptr;
    pField->SetFieldName(name);
    m_pFields[m_nFields++] = pField;
    return pField;
}

CField* CStream::GetField(int i) {
    return i >= 0 && i < m_nFields ? m_pFields[i] : nullptr;
}

CField* CStream::GetField(const char* name) {
    return GetField(GetFieldIndex(name));
}

int CStream::GetNumFields() {
    return m_nFields;
}

int CStream::GetFieldIndex(const char* name) {
    if (name == nullptr) return -1;
    for (int i = 0; i < m_nFields; ++i) {
        if (std::strcmp(m_pFields[i]->GetFieldName(), name) == 0) return i;
    }
    return -1;
}

namespace {

// A token without its values is no token.
CToken* Complete(CToken* pToken, const CStream* pStream) {
    if (pToken != nullptr && !mlds::HasAllSlots(pToken, pStream)) {
        delete pToken;
        return nullptr;
    }
    return pToken;
}

}  // namespace

CToken* CStream::CreateToken() {
    return m_pPlexa != nullptr ? Complete(new CToken(Owner()), Owner()) : nullptr;
}

CToken* CStream::CreateToken(const char* name) {
    return name != nullptr && m_pPlexa != nullptr ? Complete(new CToken(Owner(), name), Owner())
                                                  : nullptr;
}

int CStream::GetNumTokens() {
    return m_nTokens;
}

int CStream::GetNumSyncMarks() {
    return m_nSyncMarks;
}

void CStream::Renumber() {
    if (m_pNumbering != nullptr) m_pNumbering->RenumberNow();
}
