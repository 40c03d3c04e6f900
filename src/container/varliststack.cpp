// The stack of variable lists, and the fences that follow its top.
#include <algorithm>
#include <initializer_list>
#include <string_view>

#include "container/listaccess.h"
#include "internals.h"

using mlds::Internals;
using mlds::ListAccess;

void CPlexa::PushVarListStack(CVarList* pVarList) {
    if (m_nVarLists == kMaxVarLists) return;
    // Push and Pop come in pairs, whatever is pushed. A list of another container would not take
    // itself off this stack when it goes: its entry stands for no list.
    if (pVarList != nullptr && Internals::PlexaOf(pVarList) != this) pVarList = nullptr;
    m_pVarLists[m_nVarLists++] = pVarList;
}

void CPlexa::PopVarListStack() {
    if (m_nVarLists == 0) return;
    --m_nVarLists;
    FollowTopVarList();
}

CVarList* CPlexa::GetCurrentVarList() {
    return Internals::TopVarList(this);
}

void mlds::ListAccess::DropFromStack(CPlexa* p, const CVarList* pList) {
    int nKept = 0;
    for (int i = 0; i < p->m_nVarLists; ++i) {
        if (p->m_pVarLists[i] != pList) p->m_pVarLists[nKept++] = p->m_pVarLists[i];
    }
    p->m_nVarLists = nKept;
}

void CPlexa::FollowTopVarList() {
    const CVarList* pTop = Internals::TopVarList(this);
    for (int i = 0; i < m_nStreams; ++i) {
        ListAccess::SetFence(m_pStreams[i], pTop != nullptr && ListAccess::Fences(pTop)[i]);
    }
}

void mlds::ListAccess::SetFence(CStream* p, bool bOn) {
    if (p->m_bFence == bOn) return;
    p->m_bFence = bOn;
    p->m_pPlexa->m_nFenced += bOn ? 1 : -1;
}

void CPlexa::Fence(int streamIndex, bool bOn) {
    if (CStream* pFenced = pStream(streamIndex)) ListAccess::SetFence(pFenced, bOn);
}

void CPlexa::Fence(const char* name, bool bOn) {
    if (CStream* pFenced = pStream(name)) ListAccess::SetFence(pFenced, bOn);
}

bool CPlexa::Fence(int streamIndex) {
    CStream* pFenced = pStream(streamIndex);
    return pFenced != nullptr && Internals::IsFenced(pFenced);
}

bool CPlexa::Fence(const char* name) {
    CStream* pFenced = pStream(name);
    return pFenced != nullptr && Internals::IsFenced(pFenced);
}

void CVarList::ClearFences() {
    for (int i = 0, n = Internals::NumStreams(m_pPlexa); i < n; ++i) {
        m_bFences[i] = false;
        ListAccess::SetFence(Internals::Stream(m_pPlexa, i), false);
    }
}

void CVarList::FenceStream(int streamIndex) {
    if (streamIndex < 0 || streamIndex >= Internals::NumStreams(m_pPlexa)) return;
    m_bFences[streamIndex] = true;
    ListAccess::SetFence(Internals::Stream(m_pPlexa, streamIndex), true);
}

void CVarList::SetFence(const char* names) {
    if (m_pPlexa == nullptr || names == nullptr) return;
    ClearFences();
    constexpr const char* kSeparators = ", ";
    std::string_view rest(names);
    for (;;) {
        rest.remove_prefix(std::min(rest.find_first_not_of(kSeparators), rest.size()));
        if (rest.empty()) return;
        const std::string_view name = rest.substr(0, rest.find_first_of(kSeparators));
        rest.remove_prefix(name.size());
        for (int i = 0, n = Internals::NumStreams(m_pPlexa); i < n; ++i) {
            if (name != Internals::Name(Internals::Stream(m_pPlexa, i))) continue;
            FenceStream(i);
            break;
        }
    }
}

void CVarList::SetFence(CStream* s1, CStream* s2, CStream* s3, CStream* s4, CStream* s5) {
    if (m_pPlexa == nullptr) return;
    ClearFences();
    for (CStream* pFenced : {s1, s2, s3, s4, s5}) {
        if (pFenced != nullptr && mlds::BelongsTo(m_pPlexa, pFenced)) {
            FenceStream(Internals::IndexOf(pFenced));
        }
    }
}

void CVarList::SetFence(int i1, int i2, int i3, int i4, int i5) {
    if (m_pPlexa == nullptr) return;
    ClearFences();
    for (const int i : {i1, i2, i3, i4, i5}) FenceStream(i);
}

bool CVarList::GetFenceState(int streamIndex) {
    return streamIndex >= 0 && streamIndex < kMaxStreams && m_bFences[streamIndex];
}
