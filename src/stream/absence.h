// Objects that left a chain and live on: alone, or in a chain that was cut out of a stream.
//
// The links of an object that was taken out stay as they were. A scan may step along them as long
// as everything they can lead to is alive, so that a loop may remove an object and go on from it:
//
//  1. A stream counts the objects that were in a chain and are gone. A removed object remembers
//     that number, in its epoch; while it stands, the neighbours that its links name are alive.
//  2. A neighbour that belongs to another stream counts its end in every stream of the container:
//     the object that names it looks at its own stream only.
//  3. What a stale link leads to is linked or in a cut-out chain, where links are true, or was
//     itself removed later, and is asked in its turn. Steps along stale links lead forward in
//     time, so every scan ends.
//  4. A stream also counts the objects that are absent from every chain. When its container goes,
//     it stays behind as an empty shell until the last of them is gone: an object that was linked
//     once can always count its own end.
//
// In a cut-out chain the epoch says which stream the chain was cut out of: tokens of other streams
// may lie in it.
#ifndef MLDS_STREAM_ABSENCE_H
#define MLDS_STREAM_ABSENCE_H

#include "internals.h"

namespace mlds {

/// The object has just left the chain between its two neighbours.
void NoteRemoval(CStreamObj* p);
/// The same for an object that is destroyed at once, as most are.
void NoteGone(CStreamObj* p);
/// The object has come to lie in a chain that was cut out of the stream with the index `origin`.
void NoteCut(CStreamObj* p, std::uint32_t origin);
/// The object is about to be linked.
void CountReturn(CStreamObj* p);
inline void NoteReturn(CStreamObj* p) {
    if (Internals::IsAbsent(p)) CountReturn(p);
}
/// The object goes, or becomes another one by assignment.
void NoteEnd(CStreamObj* p);

/// True if the object lies in a chain that was cut out of the stream.
inline bool WasCutFrom(CStreamObj* p, const CStream* pOrigin) {
    return (Internals::State(p) & osDetached) != 0 &&
           Internals::Epoch(p) == static_cast<std::uint32_t>(Internals::IndexOf(pOrigin)) &&
           Internals::PlexaOf(Internals::StreamOf(p)) == Internals::PlexaOf(pOrigin);
}

/// One step along the links of any object; null where they may lead to what is gone.
inline CStreamObj* StepFrom(CStreamObj* p, bool bRight) {
    if (!Internals::IsInChain(p) &&
        ((Internals::State(p) & osRemoved) == 0 ||
         Internals::Epoch(p) != Internals::Destroyed(Internals::StreamOf(p)))) {
        return nullptr;
    }
    return Internals::Neighbour(p, bRight);
}

}  // namespace mlds

#endif
