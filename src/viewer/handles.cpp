// The table of handles.
#include "viewer/handles.h"

#include <stdexcept>

#include "report/report.h"
#include "viewer/conversation.h"

namespace mlds {

/// The mark that an object carries while it has a handle. Nobody else reads or writes it but the
/// object itself, as it goes.
struct HandleAccess {
    static void SetHasHandle(CStreamObj* p, bool bHasHandle) { p->m_bHasHandle = bHasHandle; }
};

HandleTable::~HandleTable() {
    for (const auto& [p, entry] : m_entries) {
        if (entry.bObject) {
            auto* pObj = const_cast<CStreamObj*>(static_cast<const CStreamObj*>(p));
            HandleAccess::SetHasHandle(pObj, false);
        }
    }
}

HandleTable::Entry& HandleTable::EntryOf(const void* p) {
    const auto [it, bNew] = m_entries.try_emplace(p, Entry{0, false});
    if (bNew) {
        if (m_nLast == UINT32_MAX) {
            m_entries.erase(it);
            throw std::length_error("no handles left");
        }
        it->second.handle = ++m_nLast;
    }
    return it->second;
}

std::uint32_t HandleTable::OfObject(CStreamObj* p) {
    if (p == nullptr) return 0;
    Entry& entry = EntryOf(p);
    entry.bObject = true;
    HandleAccess::SetHasHandle(p, true);
    return entry.handle;
}

std::uint32_t HandleTable::OfAddress(const void* p) {
    return p != nullptr ? EntryOf(p).handle : 0;
}

// Only requests look this way round, and those a person makes by hand: no second table for them.
const void* HandleTable::Find(std::uint32_t handle) const {
    for (const auto& [p, entry] : m_entries) {
        if (entry.handle == handle) return p;
    }
    return nullptr;
}

void HandleTable::Forget(const void* p) {
    m_entries.erase(p);
}

void ForgetHandle(CStreamObj* p) {
    HandleAccess::SetHasHandle(p, false);
    ForgetHandle(Internals::PlexaOf(Internals::StreamOf(p)), p);
}

void ForgetHandle(const CPlexa* pPlexa, const void* p) {
    if (Conversation* pOpen = ConversationAccess::Current(pPlexa)) pOpen->handles.Forget(p);
}

}  // namespace mlds
