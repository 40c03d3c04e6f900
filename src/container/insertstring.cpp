// Filling a stream from a text in the string notation.
#include "container/attempt.h"
#include "container/notation.h"
#include "container/placing.h"
#include "container/textcopy.h"
#include "internals.h"
#include "stream/fieldslots.h"
#include "stream/hostvariable.h"
#include "stream/ordernumbering.h"

using mlds::Bounds;
using mlds::Internals;
using mlds::Item;
using mlds::ItemKind;
using mlds::NotationReader;
using mlds::OrderNumbering;
using mlds::PartText;

namespace {

constexpr const char* kNameField = "name";

// Tokens in no stream, chained through their own links in the order they were added.
class TokenQueue {
public:
    TokenQueue() = default;
    TokenQueue(const TokenQueue&) = delete;
    TokenQueue& operator=(const TokenQueue&) = delete;
    ~TokenQueue() {
        while (CToken* p = Take()) delete p;
    }
    void Add(CToken* p) {
        if (m_pFirst == nullptr) {
            m_pFirst = p;
        } else {
            OrderNumbering::JoinLoose(m_pLast, p);
        }
        m_pLast = p;
    }
    /// The first token, the caller's from then on; null if there is none.
    CToken* Take() {
        auto* p = static_cast<CToken*>(m_pFirst);
        if (p == nullptr) return nullptr;
        m_pFirst = Internals::Next(p);
        OrderNumbering::JoinLoose(p, nullptr);
        OrderNumbering::JoinLoose(nullptr, m_pFirst);
        return p;
    }

private:
    CStreamObj* m_pFirst = nullptr;
    CStreamObj* m_pLast = nullptr;
};

int NameType(CStream* pStream) {
    CField* pField = pStream->GetField(kNameField);
    return pField != nullptr ? pField->GetFieldType() : -1;
}

// Checks a text against streams and variables before anything changes, without reporting look-ups,
// and copies the tokens that it asks for: the originals may lie where the text will go.
class NotationCheck {
public:
    NotationCheck(CPlexa* pPlexa, CStream* pTarget, bool bHasBounds, TokenQueue& copies)
        : m_pPlexa(pPlexa), m_pCurrent(pTarget), m_bHasBounds(bHasBounds), m_copies(copies) {}

    /// Notes what is wrong with the text, which begins at `begin`.
    bool Accepts(NotationReader reader, const char* begin, mlds::Attempt& attempt) {
        Item item;
        do {
            if (!reader.Next(item)) {
                return attempt.RefuseAt(reader.ItemStart() - begin, reader.Fault());
            }
            if (const char* fault = FaultOf(item)) {
                return attempt.RefuseAt(reader.ItemStart() - begin, fault, item.part);
            }
        } while (item.kind != ItemKind::end);
        return true;
    }

private:
    // What is wrong with an item; null if nothing is.
    const char* FaultOf(const Item& item) {
        constexpr const char* kNoBounds = "a token needs a mark to stand beside";
        switch (item.kind) {
            case ItemKind::end: return nullptr;
            case ItemKind::streamSwitch:
                m_pCurrent = m_pPlexa->pStream(PartText(item.part));
                return m_pCurrent != nullptr ? nullptr : "there is no stream \"%s\"";
            case ItemKind::token:
            case ItemKind::fieldList:
                if (!m_bHasBounds) return kNoBounds;
                return m_pCurrent->GetFieldIndex(kNameField) >= 0
                           ? nullptr
                           : "the stream has no field \"name\" for \"%s\"";
            case ItemKind::copy: return m_bHasBounds ? AddCopy(PartText(item.part)) : kNoBounds;
            case ItemKind::binding: return FaultOfBinding(PartText(item.part));
        }
        return nullptr;
    }

    const char* AddCopy(const char* name) {
        CVarList* pList = Internals::TopVarList(m_pPlexa);
        const int i = pList != nullptr ? pList->GetVarIndex(name) : -1;
        if (i < 0) return "there is no variable \"%s\"";
        constexpr const char* kNoToken = "the variable \"%s\" holds no token";
        if (Internals::TypeOf(pList, i) != vtTokenPtr) return kNoToken;
        CStreamObj* pHeld = mlds::ReadHostVariable(Internals::BoundVar(pList, i));
        if (pHeld == nullptr || !Internals::IsToken(pHeld)) return kNoToken;
        CToken* pCopy = mlds::CopyOf(static_cast<CToken*>(pHeld));
        if (pCopy == nullptr) return mlds::kOutOfMemory;
        m_copies.Add(pCopy);
        return nullptr;
    }

    // An unknown variable is allowed and binds nothing.
    const char* FaultOfBinding(const char* name) {
        CVarList* pList = Internals::TopVarList(m_pPlexa);
        const int i = pList != nullptr ? pList->GetVarIndex(name) : -1;
        if (i < 0 || Internals::TypeOf(pList, i) != vtTokenPtr) return nullptr;
        return "the variable \"%s\" is for a token, not for a mark";
    }

    CPlexa* m_pPlexa;
    CStream* m_pCurrent;
    bool m_bHasBounds;
    TokenQueue& m_copies;
};

// Carries out a text that has been checked.
class NotationRun {
public:
    NotationRun(CPlexa* pPlexa, CStream* pTarget, const Bounds& bounds, TokenQueue& copies)
        : m_pPlexa(pPlexa),
          m_pTarget(pTarget),
          m_pCurrent(pTarget),
          m_pLeft(bounds.pLeft),
          m_pRight(bounds.pRight),
          m_bMarkNeeded(bounds.pLeft != nullptr && bounds.pLeft == bounds.pRight),
          m_copies(copies) {}

    /// False as soon as the stream refuses a plain token, and when memory runs out.
    bool Run(NotationReader reader, const char* begin, mlds::Attempt& attempt) {
        Item item;
        while (reader.Next(item) && item.kind != ItemKind::end) {
            const bool bDone = Do(item);
            if (bDone && !m_bRefused && !m_bOutOfMemory) continue;
            attempt.RefuseAt(reader.ItemStart() - begin,
                             m_bOutOfMemory ? mlds::kOutOfMemory : mlds::kNoPlaceFor, item.part);
            if (!bDone || m_bOutOfMemory) return false;
        }
        return true;
    }

    bool IsOutOfMemory() const { return m_bOutOfMemory; }

    /// A variable that no token came for gets the right mark.
    void BindPendingToRight() {
        if (m_ppPending != nullptr) mlds::WriteHostVariable(m_ppPending, m_pRight);
    }

private:
    bool Do(const Item& item) {
        switch (item.kind) {
            case ItemKind::end: break;
            case ItemKind::streamSwitch: m_pCurrent = m_pPlexa->pStream(PartText(item.part)); break;
            case ItemKind::token: return DoToken(item);
            case ItemKind::fieldList: {
                if (!Open()) break;
                CToken* pToken = Make(item);
                if (pToken == nullptr) break;
                SetFields(pToken, item.fields);
                Place(pToken);
                break;
            }
            case ItemKind::copy:
                Variable(PartText(item.part));
                if (CToken* pCopy = m_copies.Take(); Open()) {
                    Place(pCopy);
                } else {
                    delete pCopy;
                }
                break;
            case ItemKind::binding: m_ppPending = Variable(PartText(item.part)); break;
        }
        return true;
    }

    bool DoToken(const Item& item) {
        CToken* pToken = Open() ? Make(item) : nullptr;
        const bool bPlaced = pToken != nullptr && Place(pToken);
        return bPlaced || !item.bPlain;
    }

    CToken* Make(const Item& item) {
        CToken* pToken = m_pCurrent->CreateToken(PartText(item.part));
        if (pToken == nullptr) m_bOutOfMemory = true;
        return pToken;
    }

    // Makes room for the next token: every token but the first gets a mark of the target stream in
    // front of it, placed through the current stream. The mark is what a pending variable gets.
    // False if there is no room.
    bool Open() {
        if (m_bMarkNeeded) {
            CSyncMark* pMark = new CSyncMark(m_pTarget);
            if (pMark == nullptr) m_bOutOfMemory = true;
            if (pMark == nullptr || !m_pCurrent->InsertStreamObj(pMark, iwLeftOf, m_pRight)) {
                CStream::DiscardStreamObj(pMark);
                m_bRefused = true;
                return false;
            }
            m_pLeft = pMark;
        }
        m_bMarkNeeded = true;
        if (m_ppPending != nullptr) mlds::WriteHostVariable(m_ppPending, m_pLeft);
        m_ppPending = nullptr;
        return true;
    }

    // A token that the stream refuses is gone.
    bool Place(CToken* pToken) {
        if (m_pCurrent->InsertStreamObj(pToken, iwRightOf, m_pLeft)) return true;
        CStream::DiscardStreamObj(pToken);
        m_bRefused = true;
        return false;
    }

    void SetFields(CToken* pToken, const char* fields) {
        mlds::FieldEntry entry;
        while (NotationReader::NextField(fields, entry)) {
            const PartText word(entry.word);
            CField* pWithSet = nullptr;
            CFieldValueSet* pSet = FindSet(word, pWithSet);
            if (entry.bHasValue && pSet != nullptr) {
                // A set of the field's own name wins over the value text.
                pToken->SetFieldValue(word, pSet->GetIndex());
            } else if (entry.bHasValue) {
                pToken->SetFieldValue(word, PartText(entry.value));
            } else if (pSet != nullptr) {
                pToken->SetFieldValue(pWithSet->GetFieldName(), pSet->GetIndex());
            }
        }
    }

    CFieldValueSet* FindSet(const char* name, CField*& pWithSet) {
        for (int i = 0, n = m_pCurrent->GetNumFields(); i < n; ++i) {
            pWithSet = m_pCurrent->GetField(i);
            if (CFieldValueSet* pSet = pWithSet->GetFieldValueSet(name)) return pSet;
        }
        return nullptr;
    }

    // The host's variable of that name, its use reported; null if there is none.
    CStreamObj** Variable(const char* name) {
        CVarList* pList = m_pPlexa->GetCurrentVarList();
        return pList != nullptr ? pList->GetVarPtr(name) : nullptr;
    }

    CPlexa* m_pPlexa;
    CStream* m_pTarget;
    CStream* m_pCurrent;
    CSyncMark* m_pLeft;
    CSyncMark* m_pRight;
    bool m_bMarkNeeded;
    bool m_bOutOfMemory = false;
    bool m_bRefused = false;  // something was left out
    CStreamObj** m_ppPending = nullptr;
    TokenQueue& m_copies;
};

// Finds or makes the two marks between which the text goes, and empties the place between them.
bool OpenPlace(CStream* pTarget, Bounds& bounds) {
    if (bounds.pLeft != nullptr && bounds.pRight != nullptr) {
        return bounds.pLeft == bounds.pRight ||
               mlds::RemoveBetween(pTarget, bounds.pLeft, bounds.pRight);
    }
    if (bounds.pLeft != nullptr) {
        bounds.pRight = mlds::MarkRightOf(pTarget, bounds.pLeft);
        return bounds.pRight != nullptr;
    }
    if (bounds.pRight != nullptr) {
        bounds.pLeft = mlds::MarkLeftOf(pTarget, bounds.pRight);
        return bounds.pLeft != nullptr;
    }
    return true;
}

}  // namespace

bool CPlexa::InsertString(CStream* pInto, const char* text, CSyncMark* pLeft, CSyncMark* pRight) {
    mlds::Attempt attempt(this,
                          "CPlexa::InsertString(CStream * pStream, char * text, CSyncMark * pLeft, "
                          "CSyncMark * pRight)");
    if (!mlds::BelongsTo(this, pInto)) return attempt.Refuse(mlds::kNoStream);
    if (text == nullptr) return attempt.Refuse(mlds::kNoText);
    const mlds::TextCopy copy(text);
    if (copy.get() == nullptr) return attempt.Refuse(mlds::kOutOfMemory);
    const NotationReader reader(copy.get(), NameType(pInto));
    TokenQueue copies;
    NotationCheck check(this, pInto, pLeft != nullptr || pRight != nullptr, copies);
    if (!check.Accepts(reader, copy.get(), attempt)) return false;
    Bounds bounds;
    if (!bounds.Carry(this, pInto, pLeft, pRight)) return attempt.Refuse(mlds::kNotCarried);
    if (!OpenPlace(pInto, bounds)) {
        const bool bBoth = pLeft != nullptr && pRight != nullptr;
        return attempt.Refuse(bBoth ? mlds::kNoPlace : mlds::kNoRoom);
    }
    DelayMessageDisplay(true);
    NotationRun run(this, pInto, bounds, copies);
    // A host that sees a plain token refused mends the stream with the display still delayed.
    if (!run.Run(reader, copy.get(), attempt) && !run.IsOutOfMemory()) return false;
    DelayMessageDisplay(false);
    run.BindPendingToRight();
    RankPopulatedStreams();
    return !run.IsOutOfMemory();
}

bool CPlexa::InsertString(const char* text, CSyncMark* pLeft, CSyncMark* pRight) {
    mlds::Attempt attempt(
        this, "CPlexa::InsertString(char * text, CSyncMark * pLeft, CSyncMark * pRight)");
    if (text == nullptr) return attempt.Refuse(mlds::kNoText);
    const char* begin = text;
    const char* name = "";
    CStream* pInto = nullptr;
    text += std::strspn(text, " ");
    switch (*text) {
        case '[':
            pInto = pStream(name = "phone");
            ++text;
            break;
        case '{':
            pInto = pStream(name = "inp");
            ++text;
            break;
        case '%': break;
        default: return attempt.RefuseAt(text - begin, mlds::kNoPrefix);
    }
    text += std::strspn(text, " ");
    std::string_view part = name;
    if (*text == '%') {
        ++text;
        part = mlds::ReadUpTo(text, " ]}");
        if (part.size() > mlds::kLongestName) {
            return attempt.RefuseAt(text - begin, "a name is too long");
        }
        pInto = pStream(PartText(part));
    }
    if (pInto == nullptr) {
        // A text for a stream that this container does not have concerns nobody.
        attempt.Refuse("there is no stream \"%s\"", part);
        return true;
    }
    const bool bDone = InsertString(pInto, text, pLeft, pRight);
    attempt.ShiftBy(text - begin);
    return bDone;
}
