// The texts of messages: what a viewer is told of an object, a variable or a stream.
#include "viewer/messagetext.h"

#include <cstdio>

#include "container/hostvariable.h"

namespace mlds {

namespace {

constexpr int kMostValuesDescribed = 50;

template <typename... Args>
void Print(std::string& text, const char* format, Args... args) {
    char part[96];  // numbers only
    text.append(part, static_cast<std::size_t>(std::snprintf(part, sizeof part, format, args...)));
}

int KindOf(const CStreamObj* p) {
    return Internals::IsToken(p) ? otToken : otSyncMark;
}

}  // namespace

template <typename... Args>
void MessageText::Write(const char* format, Args... args) {
    Print(m_link.text, format, args...);
}

std::uint32_t MessageText::HandleOf(CStreamObj* p) {
    // What belongs to another container would not tell this table when it goes.
    return BelongsTo(m_pPlexa, p) ? m_link.handles.OfObject(p) : m_link.handles.OfAddress(p);
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
    m_link.text.pop_back();
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
    m_link.text += ' ';
    for (int i = 0, n = Internals::NumFields(Internals::StreamOf(p)); i < n; ++i) {
        m_link.text += '|';
        if (const char* value = p->GetFieldValueString(i)) m_link.text += value;
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

const char* MessageText::Language() {
    Begin();
    Write("%d.%d", m_pPlexa->GetLanguage(), m_pPlexa->GetDialect());
    return Text();
}

const char* MessageText::List(const CVarList* pList) {
    Begin();
    Write("%#010x", m_link.handles.OfAddress(pList));
    return Text();
}

const char* MessageText::Variable(const CVarList* pList, int i, const char* name) {
    Begin();
    CStreamObj** ppVar = Internals::BoundVar(pList, i);
    Write("%1d %#010x %d %#010x ", Internals::IsDelayed(m_pPlexa) ? 1 : 0,
          m_link.handles.OfAddress(pList), i, m_link.handles.OfAddress(ppVar));
    m_link.text += name;
    Write(" %#010x", m_link.handles.OfAddress(ReadHostVariable(ppVar)));
    return Text();
}

std::string StreamDescription(CStream* pStream) {
    std::string text;
    const int nFields = Internals::NumFields(pStream);
    Print(text, "%3d %3d ", Internals::IndexOf(pStream), nFields);
    text += Internals::Name(pStream);
    // Every stream has a name field: it goes without saying.
    for (int i = 1; i < nFields; ++i) {
        CField* pField = Internals::Field(pStream, i);
        int nValues = pField->GetNumPossibleValues();
        if (nValues < 0 || nValues > kMostValuesDescribed) nValues = 0;
        text += '|';
        text += pField->GetFieldName();
        Print(text, " %d %d ", static_cast<int>(pField->GetFieldType()), nValues);
        for (int k = 0; k < nValues; ++k) {
            text += '\n';
            if (const char* value = pField->GetPossibleValues(k)) text += value;
        }
    }
    return text;
}

}  // namespace mlds
