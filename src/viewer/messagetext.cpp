// The texts of messages: what a viewer is told of an object, a variable or a stream.
#include "viewer/messagetext.h"

#include <cstdio>

#include "stream/hostvariable.h"

namespace mlds {

namespace {

constexpr int kMostValuesDescribed = 50;

int KindOf(const CStreamObj* p) {
    return Internals::IsToken(p) ? otToken : otSyncMark;
}

}  // namespace

template <typename... Args>
void MessageText::Write(const char* format, Args... args) {
    char part[96];  // numbers only
    const int n = std::snprintf(part, sizeof part, format, args...);
    m_with.text.append(part, static_cast<std::size_t>(n));
}

std::uint32_t MessageText::HandleOf(CStreamObj* p) {
    // What belongs to another container would not tell this table when it goes.
    return BelongsTo(m_pPlexa, p) ? m_with.handles.OfObject(p) : m_with.handles.OfAddress(p);
}

const char* MessageText::Inserted(CStreamObj* p) {
    Begin();
    // The links of what is in no stream are stale.
    CStreamObj* pLeft = Internals::IsLinked(p) ? Internals::Prev(p) : nullptr;
    Write("%1d %#010x %2d %#010x %1d", Internals::IsDelayed(m_pPlexa) ? 1 : 0, HandleOf(pLeft),
          Internals::IndexOf(Internals::StreamOf(p)), HandleOf(p), KindOf(p));
    WriteBody(p);
    return Text();
}

const char* MessageText::Changed(CStreamObj* p) {
    Removed(p);
    m_with.text.pop_back();
    WriteBody(p);
    return Text();
}

const char* MessageText::Removed(CStreamObj* p) {
    Begin();
    Write("%1d %2d %#010x %1d ", Internals::IsDelayed(m_pPlexa) ? 1 : 0,
          Internals::IndexOf(Internals::StreamOf(p)), HandleOf(p), KindOf(p));
    return Text();
}

void MessageText::WriteBody(CStreamObj* p) {
    if (Internals::IsToken(p)) {
        WriteToken(static_cast<CToken*>(p));
    } else {
        WriteSyncMark(static_cast<CSyncMark*>(p));
    }
}

void MessageText::WriteToken(CToken* p) {
    m_with.text += ' ';
    for (int i = 0, n = Internals::NumFields(Internals::StreamOf(p)); i < n; ++i) {
        m_with.text += '|';
        if (const char* value = p->GetFieldValueString(i)) m_with.text += value;
    }
}

void MessageText::WriteSyncMark(CSyncMark* p) {
    int n = 0;
    const int nStreams = Internals::NumStreams(m_pPlexa);
    for (int i = 0; i < nStreams; ++i) n += p->GetCorrespondingSyncMark(i) != nullptr ? 1 : 0;
    Write(" %4d ", n);
    for (int i = 0; i < nStreams; ++i) {
        CSyncMark* pThere = p->GetCorrespondingSyncMark(i);
        if (pThere != nullptr) Write("%2d %#010x ", i, HandleOf(pThere));
    }
}

const char* MessageText::Stream(CStream* pStream) {
    Begin();
    const int nFields = Internals::NumFields(pStream);
    Write("%3d %3d ", Internals::IndexOf(pStream), nFields);
    m_with.text += Internals::Name(pStream);
    // Every stream has a name field: it goes without saying.
    for (int i = 1; i < nFields; ++i) {
        CField* pField = Internals::Field(pStream, i);
        int nValues = pField->GetNumPossibleValues();
        if (nValues < 0 || nValues > kMostValuesDescribed) nValues = 0;
        m_with.text += '|';
        m_with.text += pField->GetFieldName();
        Write(" %d %d ", static_cast<int>(pField->GetFieldType()), nValues);
        for (int k = 0; k < nValues; ++k) {
            m_with.text += '\n';
            if (const char* value = pField->GetPossibleValues(k)) m_with.text += value;
        }
    }
    return Text();
}

const char* MessageText::Language() {
    Begin();
    Write("%d.%d", m_pPlexa->GetLanguage(), m_pPlexa->GetDialect());
    return Text();
}

const char* MessageText::List(const CVarList* pList) {
    Begin();
    Write("%#010x", m_with.handles.OfAddress(pList));
    return Text();
}

const char* MessageText::Variable(const CVarList* pList, int i) {
    Begin();
    CStreamObj** ppVar = Internals::BoundVar(pList, i);
    Write("%1d %#010x %d %#010x ", Internals::IsDelayed(m_pPlexa) ? 1 : 0,
          m_with.handles.OfAddress(pList), i, m_with.handles.OfAddress(ppVar));
    m_with.text += Internals::VarName(pList, i);
    Write(" %#010x", m_with.handles.OfAddress(ReadHostVariable(ppVar)));
    return Text();
}

}  // namespace mlds
