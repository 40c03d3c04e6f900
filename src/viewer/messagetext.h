// The texts of messages.
#ifndef MLDS_VIEWER_MESSAGETEXT_H
#define MLDS_VIEWER_MESSAGETEXT_H

#include "viewer/conversation.h"

namespace mlds {

/// Writes the texts of messages about one container over one another, into the
/// conversation's text. What
/// is returned is valid until the next is written. Throws std::bad_alloc, or std::length_error when
/// there are no handles left.
class MessageText {
public:
    MessageText(CPlexa* pPlexa, Conversation& with) : m_pPlexa(pPlexa), m_with(with) {}

    const char* Inserted(CStreamObj* p);
    const char* Changed(CStreamObj* p);
    const char* Removed(CStreamObj* p);
    /// The stream's name and its fields but the first, with their possible values.
    const char* Stream(CStream* pStream);
    const char* Language();
    const char* List(const CVarList* pList);
    const char* Variable(const CVarList* pList, int i);

private:
    void Begin() { m_with.text.clear(); }
    template <typename... Args>
    void Write(const char* format, Args... args);
    void WriteBody(CStreamObj* p);
    void WriteToken(CToken* p);
    void WriteSyncMark(CSyncMark* p);
    std::uint32_t HandleOf(CStreamObj* p);
    const char* Text() const { return m_with.text.c_str(); }

    CPlexa* m_pPlexa;
    Conversation& m_with;
};

}  // namespace mlds

#endif
