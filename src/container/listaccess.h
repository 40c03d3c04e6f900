// The door between a container and its variable lists, and to what follows the current list.
#ifndef MLDS_CONTAINER_LISTACCESS_H
#define MLDS_CONTAINER_LISTACCESS_H

#include "mlds/plexa.h"
#include "mlds/varlist.h"

namespace mlds {

struct ListAccess {
    /// Every list of the container, stacked or not, so that it can let go of those that outlive it.
    static CVarList*& First(CPlexa* p) { return p->m_pFirstVarList; }
    static void DropFromStack(CPlexa* p, const CVarList* pList);
    /// The fences of the top list become the live ones.
    static void FollowTop(CPlexa* p) { p->FollowTopVarList(); }
    /// Leaves the list as one of no container.
    static void LetGoOfContainer(CVarList* p);
    static const bool* Fences(const CVarList* p) { return p->m_bFences; }
    /// The live fence of a stream; its container counts them.
    static void SetFence(CStream* p, bool bOn);
    /// The lists that share a token as a duplicate, less one.
    static std::uint16_t& ExtraOwners(CToken* p) { return p->m_nOwners; }
};

}  // namespace mlds

#endif
