// Filling a stream from a text without notation: one token per character.
#include "container/attempt.h"
#include "container/placing.h"
#include "container/textcopy.h"
#include "internals.h"

using mlds::Bounds;
using mlds::Internals;

namespace {

// False if there is no place for the text.
bool OpenPlace(CStream* pInto, Bounds& bounds) {
    if (bounds.pLeft == nullptr) return true;  // everything goes left of the right mark
    if (bounds.pRight == nullptr) {
        bounds.pRight = mlds::MarkRightOf(pInto, bounds.pLeft);
        return bounds.pRight != nullptr;
    }
    return bounds.pLeft == bounds.pRight || mlds::RemoveBetween(pInto, bounds.pLeft, bounds.pRight);
}

}  // namespace

bool CPlexa::InsertLiteralString(CStream* pInto, const char* text, CSyncMark* pLeft,
                                 CSyncMark* pRight) {
    mlds::Attempt attempt(this,
                          "CPlexa::InsertLiteralString(CStream * pStream, char * text, CSyncMark * "
                          "pLeft, CSyncMark * pRight)");
    if (pLeft == nullptr && pRight == nullptr) return attempt.Refuse(mlds::kNoBounds);
    if (!mlds::BelongsTo(this, pInto)) return attempt.Refuse(mlds::kNoStream);
    if (text == nullptr) return attempt.Refuse(mlds::kNoText);
    const mlds::TextCopy copy(text);
    if (copy.get() == nullptr) return attempt.Refuse(mlds::kOutOfMemory);
    Bounds bounds;
    if (!bounds.Carry(this, pInto, pLeft, pRight)) return attempt.Refuse(mlds::kNotCarried);
    if (!OpenPlace(pInto, bounds)) {
        const bool bBoth = pLeft != nullptr && pRight != nullptr;
        return attempt.Refuse(bBoth ? mlds::kNoPlace : mlds::kNoRoom);
    }
    // The stretch is cleared whatever comes then; a token needs a name.
    if (*copy.get() != '\0' && pInto->GetFieldIndex("name") < 0) {
        return attempt.RefuseAt(0, mlds::kNoNameField);
    }
    for (const char* p = copy.get(); *p != '\0'; ++p) {
        const char name[2] = {*p, '\0'};
        CToken* pToken = pInto->CreateToken(name);
        if (pToken == nullptr) return attempt.RefuseAt(p - copy.get(), mlds::kOutOfMemory);
        const bool bDone = InsertStreamObject(pInto, nullptr, bounds.pRight, pToken);
        if (mlds::KeepIfLinked(pToken) == nullptr) {
            attempt.RefuseAt(p - copy.get(), mlds::kNoPlaceFor, name);
        }
        if (!bDone) return false;
    }
    return true;
}
