// The table of handles.
#include "viewer/handles.h"

#include <stdexcept>

#include "viewer/report.h"

namespace mlds {

HandleTable::~HandleTable() {
    for (const auto& [p, entry] : m_entries) {
        if (entry.bObject) {
            Internals::HasHandle(const_cast<CStreamObj*>(static_cast<const CStreamObj*>(p))) =
                false;
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
    Internals::HasHandle(p) = true;
    return entry.handle;
}

std::uint32_t HandleTable::OfAddress(const void* p) {
    return p != nullptr ? EntryOf(p).handle : 0;
}

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
    Internals::HasHandle(p) = false;
    ForgetHandle(Internals::PlexaOf(Internals::StreamOf(p)), p);
}

void ForgetHandle(const CPlexa* pPlexa, const void* p) {
    if (ViewerLink* pLink = Internals::Link(pPlexa)) pLink->handles.Forget(p);
}

}  // namespace mlds
