// The door to where an object lies, for those who bring it there: the numbering, which links, and
// what counts the objects that left a chain.
#ifndef MLDS_STREAM_PLACEACCESS_H
#define MLDS_STREAM_PLACEACCESS_H

#include "internals.h"

namespace mlds {

struct PlaceAccess {
    /// Sets the bits that say where an object lies.
    static void Set(CStreamObj* p, int bits) {
        p->m_nState = static_cast<std::uint8_t>(bits | (p->m_nState & osNamedAbroad));
    }
    static void SetNamedAbroad(CStreamObj* p) { p->m_nState |= osNamedAbroad; }
    static void SetEpoch(CStreamObj* p, std::uint32_t epoch) { p->m_nEpoch = epoch; }
    /// What streams count, see stream/absence.h.
    static std::uint32_t& Destroyed(CStream* p) { return p->m_nDestroyed; }
    static std::uint32_t& Absent(CStream* p) { return p->m_nAbsent; }
    static void DestroyShell(CStream* p) { delete p; }
};

}  // namespace mlds

#endif
