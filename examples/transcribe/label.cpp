// What people see of a token.
#include "label.h"

namespace transcribe {

std::string Phones(Tiers& tiers, CSyncMark* pFrom, CSyncMark* pTo) {
    std::string text;
    for (const Interval& phone : Intervals(pFrom->GetCorrespondingSyncMark(tiers.pPhone),
                                           pTo->GetCorrespondingSyncMark(tiers.pPhone))) {
        if (phone.pToken == nullptr) continue;
        text += phone.pToken->GetFieldValueInt("stress") > 0 ? "'" : "";
        text += phone.pToken->GetNameField();
    }
    return text;
}

std::string LabelOf(Tiers& tiers, const Interval& interval) {
    CToken* pToken = interval.pToken;
    if (pToken == nullptr) return "";
    CStream* pStream = pToken->GetStream();
    if (pStream == tiers.pWord) {
        return tiers.pInp->GetStr(interval.pLeft, interval.pRight, false);
    }
    if (pStream == tiers.pPhone || pStream == tiers.pSyl) {
        return Phones(tiers, interval.pLeft, interval.pRight);
    }
    return pToken->GetNameField();
}

}  // namespace transcribe
