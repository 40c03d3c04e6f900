// The string notation: arbitrary texts between arbitrary marks of a small container.
//
// An input is a list of lines, each a call: a character for operation and stream, one for each
// bound ('-' for none), then the text. Every text is first tried in a second container, where its
// bounds fit; that tells whether it is well formed. A malformed text must be refused with nothing
// changed; a well-formed one must be taken wherever its bounds fit.
#include <memory>
#include <vector>

#include "input.h"
#include "support/tiers.h"

using mlds_fuzz::Input;
using mlds_fuzz::Require;

namespace {

// Some twenty calls, enough for every shape that one call can leave to the next.
constexpr std::size_t kMostBytes = 600;

// The call that InsertLiteralString into the last stream is, which has no field "name".
constexpr unsigned kLiteralInBare = 11;

// Streams with names of every type, each with two marks that are tied to those of the others.
struct Container {
    explicit Container(bool bVariables) {
        CStream* pPhone = tiers["phone"];
        tiers["num"]->GetField(0)->SetFieldType(fvInt);
        tiers["RawInput"]->GetField(0)->SetFieldType(fvFloat);
        pPhone->AddField("stress")->SetFieldType(fvInt);
        CField* pVowel = pPhone->AddField("vowel");
        pVowel->CreateFieldValueSet("yes")->AddIncludeValue("a");
        pVowel->CreateFieldValueSet("stress")->AddIncludeValue("t");
        plexa.AddStream("bare");
        plexa.Initialize();
        for (int i = 0; i < plexa.GetNumStreams(); ++i) {
            CSyncMark* pNewLeft = plexa.CreateSyncMark(plexa.pStream(i));
            CSyncMark* pNewRight = plexa.CreateSyncMark(plexa.pStream(i));
            plexa.pStream(i)->InsertStreamObj(pNewRight, 3, plexa.pStream(i)->pGetLastStreamObj());
            plexa.pStream(i)->InsertStreamObj(pNewLeft, 3, pNewRight);
            if (i == 0) pLeft = pNewLeft, pRight = pNewRight;
            pLeft->SetToSynchronous(pNewLeft);
            pRight->SetToSynchronous(pNewRight);
        }
        if (!bVariables) return;
        pVariables = std::make_unique<CVarList>(&plexa);
        pVariables->AddSyncMarkPtr("x", &x);
        pVariables->AddTokenPtr("t", &t);
        pVariables->AddTokenPtr("none", &none);
    }

    bool Insert(unsigned how, const char* text, CSyncMark* pFrom, CSyncMark* pTo) {
        if (how < 2) return plexa.InsertString(text, pFrom, pTo);
        CStream* pStream = plexa.pStream(static_cast<int>(how / 2) - 1);
        return how % 2 == 0 ? plexa.InsertString(pStream, text, pFrom, pTo)
                            : plexa.InsertLiteralString(pStream, text, pFrom, pTo);
    }

    mlds_test::Tiers tiers{{"inp"}, {"phone", "||", {"a", "t", "ai"}}, {"num"}, {"RawInput"}};
    CPlexa& plexa = tiers.plexa;
    CSyncMark* pLeft = nullptr;
    CSyncMark* pRight = nullptr;
    CSyncMark* x = nullptr;
    CToken* t = nullptr;
    CToken* none = nullptr;
    std::unique_ptr<CVarList> pVariables;
};

// False where a well-formed text may fail half-way: with marks made by projection, with what lay
// right of the left bound removed, or at a plain token that would touch a sentinel.
bool BoundsFit(CStream* pStream, CSyncMark* pLeft, CSyncMark* pRight) {
    CSyncMark* pFirst = pStream->pGetFirstStreamObj();
    CSyncMark* pLast = pStream->pGetLastStreamObj();
    for (CSyncMark** pp : {&pLeft, &pRight}) {
        if (*pp == nullptr) continue;
        *pp = (*pp)->GetCorrespondingSyncMark(pStream);
        if (*pp == nullptr || *pp == pFirst || *pp == pLast) return false;
    }
    if (pRight == nullptr) return pLeft == nullptr || pLeft->GetNextStreamObj() != pLast;
    if (pLeft == nullptr) return pRight->GetPrevStreamObj() != pFirst;
    return pLeft == pRight || pLeft->LeftOf(pRight);
}

class Notation {
public:
    explicit Notation(Input in) : m_in(in) {
        while (!m_in.IsOver()) Call(m_in.Below(14), m_in.Byte(), m_in.Byte());
    }

private:
    void Call(unsigned how, unsigned left, unsigned right) {
        std::string text;
        for (unsigned c; (c = m_in.IsOver() ? '\n' : m_in.Byte()) != '\n';)
            text += static_cast<char>(c);
        std::vector<CSyncMark*> marks;
        bool bFit = true;
        for (int i = 0; i < m_main.plexa.GetNumStreams(); ++i) {
            CSyncMark* p = m_main.plexa.pStream(i)->pGetFirstStreamObj();
            for (; p != nullptr; p = p->GetNextSyncMark()) marks.push_back(p);
        }
        const auto pick = [&](unsigned c) {
            return c == '-' ? nullptr : marks[(c - 'a') % marks.size()];
        };
        CSyncMark* pLeft = pick(left);
        CSyncMark* pRight = pick(right);
        for (int i = 0; i < m_main.plexa.GetNumStreams(); ++i) {
            const bool bMeant = how < 2 || i == static_cast<int>(how / 2) - 1;
            bFit = bFit && (!bMeant || BoundsFit(m_main.plexa.pStream(i), pLeft, pRight));
        }
        // The token of the variable lies where texts go.
        m_main.x = nullptr;
        m_main.t = m_main.tiers["phone"]->pGetFirstStreamObj()->GetNextToken();
        m_probe.t = m_main.t != nullptr ? &m_token : nullptr;
        const bool bWellFormed = m_probe.Insert(how, text.c_str(), pLeft ? m_probe.pLeft : nullptr,
                                                pRight ? m_probe.pRight : nullptr);
        const std::string before = bWellFormed ? "" : mlds_test::Dump(m_main.plexa);
        const bool bTaken = m_main.Insert(how, text.c_str(), pLeft, pRight);
        Require(bWellFormed || !bTaken, "a malformed text was taken: " + text);
        // A literal text makes room before its first token finds that the stream has no names.
        const bool bMakesRoom = how == kLiteralInBare;
        Require(bWellFormed || bMakesRoom || mlds_test::Dump(m_main.plexa) == before,
                "it changed: " + text);
        Require(!bWellFormed || bTaken || !bFit, "a well-formed text was refused: " + text);
        RequireWhole(text);
    }

    void RequireWhole(const std::string& text) {
        std::unordered_set<CStreamObj*> linked{nullptr};
        mlds_fuzz::CollectLinked(m_main.plexa, linked, false);
        Require(linked.count(m_main.x) == 1, "a variable was bound to a mark that is not linked");
        // Copies, and tokens after a switch, may lie in another stream than their own.
        if (text.find_first_of("$%") != std::string::npos) m_bInOwnStream = false;
        const std::string wrong = m_bInOwnStream ? mlds_test::CheckStructure(m_main.plexa) : "";
        Require(wrong.empty(), wrong);
    }

    Input m_in;
    const bool m_bVariables = m_in.Flag();
    bool m_bInOwnStream = true;
    Container m_main{m_bVariables};
    Container m_probe{m_bVariables};
    CToken m_token{m_probe.tiers["phone"], "a"};
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size <= kMostBytes) Notation(Input(data, size));
    return 0;
}
