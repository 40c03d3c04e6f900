// The host's own pointer variables that rule variables are bound to.
//
// They are CSyncMark* or CToken* variables, but their addresses are kept as CStreamObj**. Going
// through memcpy keeps such accesses defined: the pointers have one representation, the types
// differ.
#ifndef MLDS_STREAM_HOSTVARIABLE_H
#define MLDS_STREAM_HOSTVARIABLE_H

#include <cstring>

#include "internals.h"

namespace mlds {

inline CStreamObj* ReadHostVariable(CStreamObj** pp) {
    CStreamObj* p;
    std::memcpy(&p, pp, sizeof p);
    return p;
}

inline void WriteHostVariable(CStreamObj** pp, CStreamObj* p) {
    std::memcpy(pp, &p, sizeof p);
}

}  // namespace mlds

#endif
