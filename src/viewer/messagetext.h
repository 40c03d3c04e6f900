// The texts of messages.
#ifndef MLDS_VIEWER_MESSAGETEXT_H
#define MLDS_VIEWER_MESSAGETEXT_H

#include "viewer/handles.h"

namespace mlds {

/// Writes the texts of messages about one container over one another, into the link's text. What
/// is returned is valid until the next is written. Throws std::bad_alloc, or std::length_error when
/// there are no handles left.
class MessageText {
public:
    MessageText(CPlexa* pPlexa, ViewerLink& link) : m_pPlexa(pPlexa), m_link(link) {}

    const char* Inserted(CStreamObj* p);
    const char* Changed(CStreamObj* p);
    const char* Removed(CStreamObj* p);
    const char* Language();
    const char* List(const CVarList* pList);
    const char* Variable(const CVarList* pList, int i, const char* name);

private:
    void Begin() { m_link.text.clear(); }
    template <typename... Args>
    void Write(const char* format, Args... args);
    void WriteBody(CStreamObj* p);
    void WriteToken(CToken* p);
    void WriteSyncMark(CSyncMark* p);
    std::uint32_t HandleOf(CStreamObj* p);
    const char* Text() const { return m_link.text.c_str(); }

    CPlexa* m_pPlexa;
    ViewerLink& m_link;
};

/// A stream's name and its fields but the first, with their possible values.
std::string StreamDescription(CStream* pStream);

}  // namespace mlds

#endif
