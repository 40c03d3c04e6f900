// Filling a stream from a text without notation: one token per character.
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
    if (pLeft == nullptr && pRight == nullptr) return false;
    if (!mlds::BelongsTo(this, pInto) || text == nullptr) return false;
    const mlds::TextCopy copy(text);
    if (copy.get() == nullptr) return false;
    Bounds bounds;
    if (!bounds.Carry(this, pInto, pLeft, pRight) || !OpenPlace(pInto, bounds)) return false;
    // The stretch is cleared whatever comes then; a token needs a name.
    if (*copy.get() != '\0' && pInto->GetFieldIndex("name") < 0) return false;
    for (const char* p = copy.get(); *p != '\0'; ++p) {
        const char name[2] = {*p, '\0'};
        CToken* pToken = pInto->CreateToken(name);
        if (pToken == nullptr) return false;
        const bool bDone = InsertStreamObject(pInto, nullptr, bounds.pRight, pToken);
        mlds::KeepIfLinked(pToken);
        if (!bDone) return false;
    }
    return true;
}
