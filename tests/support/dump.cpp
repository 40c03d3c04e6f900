// Containers as text: places, ties and whole dumps.
#include <unordered_set>

#include "support/tiers.h"

namespace mlds_test {

namespace {

// The members of the group that a mark points to; the mark itself with a "!" if they do not
// include it, since it was displaced.
std::string Group(CSyncMark* p) {
    CStream* pOwn = p->GetStream();
    std::string group;
    for (int i = 0; i < pOwn->pGetStreamPlexa()->GetNumStreams(); ++i) {
        if (!p->IsSynchronous(i)) continue;
        CSyncMark* pMember = p->GetCorrespondingSyncMark(i);
        if (pMember->GetCorrespondingSyncMark(pOwn) != p) return Where(p) + "!";
        group += (group.empty() ? "" : "=") + Where(pMember);
    }
    return p->IsSynchronous() && !p->IsSynchronous(pOwn) ? Where(p) + "!" : group;
}

std::string TokenText(CToken* p) {
    const char* name = p->GetNameField();
    std::string text = name != nullptr ? name : "UNKNOWN";
    CStream* pStream = p->GetStream();
    for (int i = 0; i < pStream->GetNumFields(); ++i) {
        text += std::string(" ") + pStream->GetField(i)->GetFieldName() + "=" +
                std::to_string(p->GetFieldValueIndex(i));
    }
    return text;
}

}  // namespace

std::string Where(CStreamObj* p) {
    if (p == nullptr) return "null";
    CStream* pStream = p->GetStream();
    const std::string name = pStream->GetStreamName();
    if (p == pStream->pGetFirstStreamObj()) return name + ".start";
    if (p == pStream->pGetLastStreamObj()) return name + ".end";
    const bool bMark = p->GetObjectType(otSyncMark);
    int k = bMark ? -1 : 0;  // the start sentinel does not count
    for (CStreamObj* pOther : Chain(pStream)) {
        if (pOther == p) return name + (bMark ? "." : "[") + std::to_string(k) + (bMark ? "" : "]");
        if (pOther->GetObjectType() == p->GetObjectType()) ++k;
    }
    return name + "?";
}

std::string Ties(CPlexa& plexa) {
    std::unordered_set<std::string> told;
    std::string ties;
    for (int i = 0; i < plexa.GetNumStreams(); ++i) {
        const std::vector<CStreamObj*> chain = Chain(plexa.pStream(i));
        for (std::size_t k = 1; k + 1 < chain.size(); ++k) {
            if (!chain[k]->GetObjectType(otSyncMark)) continue;
            const std::string group = Group(static_cast<CSyncMark*>(chain[k]));
            if (group.empty() || !told.insert(group).second) continue;
            ties += (ties.empty() ? "" : " ") + group;
        }
    }
    return ties;
}

std::string Dump(CPlexa& plexa, bool bIndices) {
    std::string text;
    for (int i = 0; i < plexa.GetNumStreams(); ++i) {
        CStream* pStream = plexa.pStream(i);
        text += std::string(pStream->GetStreamName()) + ": " +
                std::to_string(pStream->GetNumTokens()) + " tokens, " +
                std::to_string(pStream->GetNumSyncMarks()) + " marks\n";
        for (CStreamObj* p : Chain(pStream)) {
            text += p->GetObjectType(otToken) ? "  " + TokenText(static_cast<CToken*>(p))
                                              : "  | " + Group(static_cast<CSyncMark*>(p));
            if (bIndices) text += " @" + std::to_string(p->GetOrderIndex());
            text += "\n";
        }
    }
    return text;
}

}  // namespace mlds_test
