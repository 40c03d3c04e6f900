// Projection: the mark of one stream at the place of a mark of another.
#include "container/attempt.h"
#include "container/placing.h"
#include "internals.h"
#include "mlds/okulog.h"

using mlds::Internals;

namespace {

// Tokens of the target stream leave the place of a mark open. The entry shows the utterance, as the
// stream that it was read into holds it; its line, 723, is what hosts look for.
void ReportAmbiguous(CPlexa* pPlexa) {
    CStream* pRaw = pPlexa->pStream("RawInput");
    const char* text = pRaw != nullptr ? pRaw->GetStr(nullptr, nullptr, false) : "";
    if (okuLog.m_nLevel < 1) return;
    okuLog.logError("mlds",
                    "CPlexa::ProjectSyncMark(CStream * pTargetStream, CSyncMark * pSyncMark, "
                    "CSyncMark *pSyncMarkDisambiguator)",
                    "mlds", 723, 1, 1760, text);
}

bool IsRightNeighbour(CStreamObj* p, CStreamObj* pOfWhich) {
    return Internals::IsLinked(pOfWhich) && Internals::Next(pOfWhich) == p;
}

bool IsLeftNeighbour(CStreamObj* p, CStreamObj* pOfWhich) {
    return Internals::IsLinked(pOfWhich) && Internals::Prev(pOfWhich) == p;
}

struct Place {
    CSyncMark* pLeft = nullptr;
    CSyncMark* pRight = nullptr;
};

// Beside the disambiguator, on the side where pSyncMark lies; between it and the nearest mark if
// they are neighbours.
Place FindPlaceBeside(CPlexa* pPlexa, CStream* pTarget, CSyncMark* pSyncMark, CSyncMark* pBeside) {
    Place place;
    if (pPlexa->CSMSearch(pSyncMark, pBeside, sdLeft)) {
        place.pLeft = Internals::CounterpartOrSelf(pBeside, pTarget);
        place.pRight = pPlexa->Context(pTarget, pSyncMark, sdRight);
        if (place.pRight != nullptr && !IsLeftNeighbour(place.pLeft, place.pRight)) {
            place.pRight = nullptr;
        }
    } else if (pPlexa->CSMSearch(pSyncMark, pBeside, sdRight)) {
        place.pRight = Internals::CounterpartOrSelf(pBeside, pTarget);
        place.pLeft = pPlexa->Context(pTarget, pSyncMark, sdLeft);
        if (place.pLeft != nullptr && !IsRightNeighbour(place.pRight, place.pLeft)) {
            place.pLeft = nullptr;
        }
    }
    return place;
}

Place FindPlace(CPlexa* pPlexa, CStream* pTarget, CSyncMark* pSyncMark) {
    Place place;
    place.pLeft = pPlexa->Context(pTarget, pSyncMark, sdLeft);
    place.pRight = pPlexa->Context(pTarget, pSyncMark, sdRight);
    if (mlds::AreNeighbours(place.pLeft, place.pRight)) return place;
    ReportAmbiguous(pPlexa);
    return {};
}

}  // namespace

CSyncMark* CPlexa::ProjectSyncMark(CStream* pTargetStream, CSyncMark* pSyncMark,
                                   CSyncMark* pSyncMarkDisambiguator) {
    mlds::Attempt attempt(this);
    const auto refuse = [&](const char* reason) {
        attempt.Refuse(reason);
        return nullptr;
    };
    if (!mlds::BelongsTo(this, pSyncMark)) return refuse(mlds::kNoMark);
    if (!mlds::BelongsTo(this, pTargetStream)) return refuse(mlds::kNoStream);
    if (CSyncMark* pThere = Internals::CounterpartOrSelf(pSyncMark, pTargetStream)) return pThere;
    const Place place =
        pSyncMarkDisambiguator != nullptr
            ? FindPlaceBeside(this, pTargetStream, pSyncMark, pSyncMarkDisambiguator)
            : FindPlace(this, pTargetStream, pSyncMark);
    if (place.pLeft == nullptr && place.pRight == nullptr) return refuse(mlds::kNotCarried);
    CSyncMark* pMade = new CSyncMark(pTargetStream);
    if (pMade == nullptr) return refuse(mlds::kOutOfMemory);
    // Tied before it is linked, so that the report of the insertion shows the tie.
    if (!pSyncMark->SetToSynchronous(pMade)) {
        CStream::DiscardStreamObj(pMade);
        return refuse(mlds::kOutOfMemory);
    }
    if (!pTargetStream->InsertStreamObj(pMade, place.pLeft, place.pRight)) {
        attempt.Refuse(mlds::kNotPlaced);
    }
    return mlds::KeepIfLinked(pMade);
}

CSyncMark* CPlexa::ProjectSyncMark(const char* streamName, CSyncMark* pSyncMark,
                                   CSyncMark* pSyncMarkDisambiguator) {
    return ProjectSyncMark(pStream(streamName), pSyncMark, pSyncMarkDisambiguator);
}

CSyncMark* CPlexa::ProjectSyncMark(CStream** ppStreams, int count, CSyncMark* pSyncMark,
                                   CSyncMark* pSyncMarkDisambiguator, ScanDirectionType) {
    mlds::Attempt attempt(this);
    if (pSyncMark == nullptr || ppStreams == nullptr || count <= 0) {
        attempt.Refuse(ppStreams == nullptr || count <= 0 ? "there is no stream in the list"
                                                          : mlds::kNoMark);
        return nullptr;
    }
    CSyncMark* pProjected = nullptr;
    for (int i = 0; i < count; ++i) {
        if (ppStreams[i] == nullptr) continue;
        if (Internals::IndexOf(ppStreams[i]) == Internals::SlotOf(pSyncMark)) continue;
        pProjected = ProjectSyncMark(ppStreams[i], pSyncMark, pSyncMarkDisambiguator);
        if (pProjected == nullptr) return nullptr;
    }
    if (pProjected == nullptr) attempt.Refuse("there is no other stream in the list");
    return pProjected;
}
