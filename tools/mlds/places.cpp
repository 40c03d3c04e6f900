// Places in words.
#include "places.h"

namespace mlds_program {

namespace {

using mlds::rules::Block;
using mlds::rules::kNoTier;
using mlds::rules::Model;
using mlds::rules::Tier;
using mlds::rules::TierId;

// Where no word is there to stop at, a few tokens on either side are enough.
constexpr int kMostTokens = 8;

TierId TierOfScope(const Model& model, const Block& block) {
    if (block.within != kNoTier) return block.within;
    for (std::size_t i = 0; i < model.tiers.size(); ++i) {
        const Tier& tier = model.tiers[i];
        const bool bWords = tier.kind == Tier::Kind::spans && tier.spanned == model.text.tier;
        if (bWords && static_cast<TierId>(i) != block.from) return static_cast<TierId>(i);
    }
    return kNoTier;
}

bool TokenFollows(CSyncMark* pMark) {
    CStreamObj* pNext = pMark->GetNextStreamObj();
    return pNext != nullptr && pNext->GetObjectType(otToken);
}

// The furthest mark in a direction that no edge lies before. An edge with nothing behind it is the
// end of what lies before it.
CSyncMark* Edge(CSyncMark* pFrom, ScanDirectionType direction, CStream* pWords) {
    const bool bAtEnd = pWords != nullptr && !TokenFollows(pFrom);
    if (bAtEnd && direction == sdRight) return pFrom;
    CSyncMark* pEdge = pFrom;
    int nTokens = 0;
    bool bTokenSeen = false;
    for (CStreamObj* p = pFrom; p != nullptr; p = p->GetAdjacentStreamObj(direction)) {
        if (p->GetObjectType(otToken)) {
            bTokenSeen = true;
            if (pWords == nullptr && ++nTokens > kMostTokens) break;
            continue;
        }
        auto* pMark = static_cast<CSyncMark*>(p);
        pEdge = pMark;
        const bool bEdge = pWords != nullptr && pMark->GetCorrespondingSyncMark(pWords) != nullptr;
        // Rightward the walk begins at the place itself, which may be the left edge.
        if (bEdge && ((direction == sdLeft && !bAtEnd) || bTokenSeen)) break;
    }
    return pEdge;
}

}  // namespace

Scope::Scope(mlds::RuleHost& host, const Block& block, CSyncMark* pAt) : m_host(host) {
    const Model& model = host.rules().model();
    const TierId words = TierOfScope(model, block);
    CStream* pWords = words == kNoTier ? nullptr : host.plexa().pStream(words);
    m_pBegin = Edge(pAt, sdLeft, pWords);
    m_pEnd = Edge(pAt, sdRight, pWords);
    m_bTight = model.tiers[static_cast<std::size_t>(block.from)].kind == Tier::Kind::fromText;
}

std::string Scope::WithBar(CSyncMark* pMark) const {
    std::string text;
    bool bBar = false;
    bool bBefore = false;  // a token, which the next one may need a blank from
    for (CStreamObj* p = m_pBegin; p != nullptr; p = p->GetNextStreamObj()) {
        if (p == pMark) {
            text += '|';
            bBar = true;
            bBefore = false;
        }
        if (p == m_pEnd) break;
        if (!p->GetObjectType(otToken)) continue;
        if (bBefore && !m_bTight) text += ' ';
        text += m_host.Label(static_cast<CToken*>(p), false);
        bBefore = true;
    }
    return bBar ? text : text + '|';
}

int Scope::NumberOf(CSyncMark* pMark) const {
    int number = 1;
    for (CStreamObj* p = m_pBegin; p != nullptr && p != pMark && p != m_pEnd;
         p = p->GetNextStreamObj()) {
        if (p->GetObjectType(otToken)) ++number;
    }
    return number;
}

}  // namespace mlds_program
