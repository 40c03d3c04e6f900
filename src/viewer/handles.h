// Handles: the numbers by which messages name objects.
//
// A handle stands for an address. It is given out the first time that the address is mentioned and
// never again for another; it is forgotten when the object goes for good, and with the link.
// Objects of the container know that they have one, so that only those look here when they go.
// Addresses of host variables, and what they contain, are taken as they are and never followed.
#ifndef MLDS_VIEWER_HANDLES_H
#define MLDS_VIEWER_HANDLES_H

#include <cstdint>
#include <unordered_map>

#include "mlds/streamobj.h"

namespace mlds {

class HandleTable {
public:
    HandleTable() = default;
    HandleTable(const HandleTable&) = delete;
    HandleTable& operator=(const HandleTable&) = delete;
    /// The objects do not have handles any more.
    ~HandleTable();

    /// 0 for null. Throws std::bad_alloc, or std::length_error when all numbers are given out.
    std::uint32_t OfObject(CStreamObj* p);
    std::uint32_t OfAddress(const void* p);
    /// The address that has the handle, or null. The object there is known to be alive only if it
    /// is found in a stream.
    const void* Find(std::uint32_t handle) const;
    void Forget(const void* p);

private:
    struct Entry {
        std::uint32_t handle;
        bool bObject;  // an object of the container, and alive
    };
    Entry& EntryOf(const void* p);

    std::unordered_map<const void*, Entry> m_entries;
    std::uint32_t m_nLast = 0;
};

}  // namespace mlds

#endif
