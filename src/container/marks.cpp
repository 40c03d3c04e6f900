// Setting a field on every token between two marks.
#include "container/attempt.h"
#include "container/marknotation.h"
#include "container/notation.h"
#include "container/tokenrange.h"
#include "platform/numbertext.h"
#include "stream/hostvariable.h"

using mlds::Internals;
using mlds::MarkItem;
using mlds::MarkRead;
using mlds::MarkReader;
using mlds::PartText;

namespace {

// What a text means as a value of the field. None, as of a value that has no text, is no value;
// as a number it is 0.
int ValueOf(CField* pField, const char* text) {
    if (pField->GetFieldType() != fvInt) return pField->GetValueIndex(text);
    return text != nullptr ? mlds::platform::TextToInt(text) : 0;
}

// What the names of an item stand for, in one stream and the current variable list.
class MarkTarget {
public:
    MarkTarget(CPlexa* pPlexa, CStream* pStream)
        : m_pStream(pStream), m_pVars(pPlexa->GetCurrentVarList()) {}

    struct Change {
        CField* pField = nullptr;  // null: the item does nothing
        int value = 0;
    };

    /// What is wrong with the item: it names a field that is not there, or a variable without a
    /// token. Null if nothing is. `part` is what the sentence is about.
    const char* Resolve(const MarkItem& item, Change& change, std::string_view& part) const {
        constexpr const char* kNoField = "the stream has no field \"%s\"";
        part = item.bBareValue ? item.value : item.field;
        const PartText value(item.value);
        const PartText source(item.source);
        CField* pField = item.bBareValue ? FieldWith(value) : Named(item.field);
        const bool bTarget = item.bBareValue ? pField != nullptr : !item.field.empty();
        change = {};
        if (!bTarget && item.source.empty()) return nullptr;
        const char* text = value;
        CStreamObj** ppVar = item.bVariable ? Variable(item.variable) : nullptr;
        if (ppVar != nullptr) {
            CStreamObj* pBound = mlds::ReadHostVariable(ppVar);
            if (pBound == nullptr || !Internals::IsToken(pBound)) {
                part = item.variable;
                return "the variable \"%s\" holds no token";
            }
            auto* pToken = static_cast<CToken*>(pBound);
            if (!bTarget) part = item.source;
            if (Internals::FieldIndex(pToken, source) < 0) {
                part = item.source;
                return "the variable's token has no field \"%s\"";
            }
            text = pToken->GetFieldValueString(source);
            if (!bTarget) pField = m_pStream->GetField(source);
        }
        if (pField == nullptr) return kNoField;
        change = {pField, ValueOf(pField, text)};
        return nullptr;
    }

    /// Tells the viewer that the item's variable is used.
    void ReportUse(const MarkItem& item) const {
        if (item.bVariable && m_pVars != nullptr) m_pVars->GetVarPtr(PartText(item.variable));
    }

private:
    CField* Named(std::string_view name) const {
        return name.empty() ? nullptr : m_pStream->GetField(PartText(name));
    }

    CField* FieldWith(const char* value) const {
        for (int i = 0, n = Internals::NumFields(m_pStream); i < n; ++i) {
            CField* pField = Internals::Field(m_pStream, i);
            if (pField->GetValueIndex(value) == -1) continue;
            // From here on it is known by its name, which an earlier field may have too.
            return Named(pField->GetFieldName());
        }
        return nullptr;
    }

    CStreamObj** Variable(std::string_view name) const {
        if (m_pVars == nullptr) return nullptr;
        const int i = m_pVars->GetVarIndex(PartText(name));
        return i >= 0 ? Internals::BoundVar(m_pVars, i) : nullptr;
    }

    CStream* m_pStream;
    CVarList* m_pVars;
};

// Refuses because of a part of the text.
bool RefusePart(mlds::Attempt& attempt, const char* fault, std::string_view part,
                const char* text) {
    return attempt.RefuseAt(part.data() != nullptr ? part.data() - text : -1, fault, part);
}

// Reads a whole list without doing anything. False if it is malformed or names what is not there.
// A variable without a '.' only shows when its turn comes: what stands before it is carried out.
bool CanBeApplied(const MarkTarget& target, const char* text, mlds::Attempt& attempt) {
    MarkReader reader(text);
    if (!reader.Open())
        return attempt.RefuseAt(reader.Position() - text, "a list begins with \"<\"");
    MarkItem item;
    MarkTarget::Change change;
    for (;;) {
        const MarkRead read = reader.Next(item);
        if (read == MarkRead::end || read == MarkRead::noSource) return true;
        if (read == MarkRead::malformed) {
            return attempt.RefuseAt(reader.ItemStart() - text,
                                    "a list is not closed, or a part of it is too long");
        }
        std::string_view part;
        if (const char* fault = target.Resolve(item, change, part)) {
            return RefusePart(attempt, fault, part, text);
        }
    }
}

}  // namespace

bool CPlexa::Mark(CStream* pInto, const char* fieldName, int value, CSyncMark* pLeft,
                  CSyncMark* pRight) {
    mlds::Attempt attempt(this);
    mlds::TokenRange range;
    if (fieldName == nullptr) return attempt.Refuse(mlds::kNoText);
    if (!mlds::BelongsTo(this, pInto)) return attempt.Refuse(mlds::kNoStream);
    if (!range.Find(this, pInto, pLeft, pRight)) return attempt.Refuse(mlds::kNoCounterpart);
    const int i = pInto->GetFieldIndex(fieldName);
    if (i < 0) attempt.Refuse("the stream has no field \"%s\"", fieldName);
    DelayMessageDisplay(true);
    range.ForEach([&](CToken* p) {
        if (Internals::StreamOf(p) == pInto) {
            p->SetFieldValue(i, value);
        } else {
            p->SetFieldValue(fieldName, value);
        }
    });
    DelayMessageDisplay(false);
    return true;
}

bool CPlexa::Mark(CStream* pInto, const char* fieldName, const char* valueText, CSyncMark* pLeft,
                  CSyncMark* pRight) {
    mlds::Attempt attempt(this);
    if (!mlds::BelongsTo(this, pInto)) return attempt.Refuse(mlds::kNoStream);
    if (fieldName == nullptr || valueText == nullptr) return attempt.Refuse(mlds::kNoText);
    CField* pField = pInto->GetField(fieldName);
    if (pField == nullptr) return attempt.Refuse("the stream has no field \"%s\"", fieldName);
    return Mark(pInto, fieldName, ValueOf(pField, valueText), pLeft, pRight);
}

bool CPlexa::Mark(CStream* pInto, const char* markString, CSyncMark* pLeft, CSyncMark* pRight) {
    mlds::Attempt attempt(this);
    if (!mlds::BelongsTo(this, pInto)) return attempt.Refuse(mlds::kNoStream);
    if (markString == nullptr) return attempt.Refuse(mlds::kNoText);
    const MarkTarget target(this, pInto);
    if (!CanBeApplied(target, markString, attempt)) return false;
    MarkReader reader(markString);
    reader.Open();
    MarkItem item;
    for (;;) {
        const MarkRead read = reader.Next(item);
        if (read == MarkRead::end) return true;
        target.ReportUse(item);
        if (read == MarkRead::noSource) {
            return RefusePart(attempt, "the variable \"%s\" is not followed by \".\" and a field",
                              item.variable, markString);
        }
        MarkTarget::Change change;
        std::string_view part;
        if (const char* fault = target.Resolve(item, change, part)) {
            return RefusePart(attempt, fault, part, markString);
        }
        if (change.pField != nullptr) {
            Mark(pInto, change.pField->GetFieldName(), change.value, pLeft, pRight);
        }
    }
}

bool CPlexa::Mark(const char* markString, CSyncMark* pLeft, CSyncMark* pRight) {
    mlds::Attempt attempt(this);
    std::string_view name;
    if (markString == nullptr) return attempt.Refuse(mlds::kNoText);
    const char* begin = markString;
    if (!mlds::ReadMarkPrefix(markString, name)) {
        return attempt.RefuseAt(markString - begin, mlds::kNoPrefix);
    }
    CStream* pInto = pStream(PartText(name));
    if (pInto == nullptr) {
        // A list for a stream that this container does not have concerns nobody.
        attempt.Refuse("there is no stream \"%s\"", name);
        return true;
    }
    const bool bDone = Mark(pInto, markString, pLeft, pRight);
    attempt.ShiftBy(markString - begin);
    return bDone;
}
