// Sequences of public calls on a container, with a caller's mistakes: nulls, objects that are in no
// stream, marks of another container, values out of range.
//
// A tame input, by its first byte, makes only calls that keep tokens apart, objects in their own
// streams and groups complete; the structure must then stay whole in every respect. Other inputs
// make all calls; links must still agree, indices grow, and nothing may leak.
#include <algorithm>
#include <array>
#include <memory>
#include <vector>

#include "input.h"
#include "support/tiers.h"

using mlds_fuzz::Input;
using mlds_fuzz::Require;
using mlds_test::Tiers;

namespace {

// Some 200 calls. What a longer sequence finds, a shorter one finds sooner.
constexpr std::size_t kMostBytes = 1200;
// Beyond this, the container is emptied: a search may look at every mark for every mark.
constexpr std::size_t kMostObjects = 150;
// Enough for a top, a bottom, and two between.
constexpr std::size_t kMostLists = 4;
// The last ones bring tokens of other streams.
constexpr std::array kTexts{"",    "t",  "hai!^x", "<'ai' stress:1>]",
                            "t '", "$u", "%syl h", "a$t%inp"};
constexpr std::size_t kOwnTexts = 5;

class Editor {
public:
    explicit Editor(Input in) : m_in(in) {
        m_pMain->TieAll("inp.0=phone.0 inp.3=phone.3");
        m_pOther->TieAll("inp.0=phone.0");
        Settle(false);
        for (int n = 1; !m_in.IsOver(); ++n) {
            const unsigned what = m_in.Byte();
            Call(what % (m_bTame ? 15 : 25));
            Settle(what >= 240);
            if (m_bTame && n % 4 == 0) RequireWhole(what >= 240);
        }
        if (m_bTame) RequireWhole(true);
    }
    // Objects and lists may outlive their container.
    ~Editor() {
        if (m_mode % 4 > 1) m_pMain.reset();
        for (CStreamObj* p : m_owned) CStream::DiscardStreamObj(p);
    }

private:
    void Call(unsigned what) {
        CPlexa& plexa = m_pMain->plexa;
        CStream* pStream = m_in.Below(40) == 39 ? nullptr : Stream();
        CSyncMark* a = Mark();
        CSyncMark* b = Mark();
        CStreamObj* p = nullptr;
        switch (what) {
            case 0: plexa.InsertString(pStream, Text(), a, b); break;
            case 1: plexa.InsertLiteralString(pStream, Text(), a, b); break;
            case 2: plexa.InsertStreamObject(pStream, a, b, Fresh(pStream)); break;
            case 3: {
                CStreamObj* objs[] = {Fresh(pStream), Fresh(pStream), Fresh(pStream)};
                plexa.InsertStreamObjects(pStream, a, b, objs, Small() % 4);
                break;
            }
            case 4: {
                CStream* streams[] = {Stream(), nullptr, Stream()};
                plexa.ProjectSyncMark(streams, Small() % 4, a, b, sdRight);
                CSyncMark* pMark = plexa.ProjectSyncMark(pStream, a, b);
                Require(pMark == nullptr || pMark->GetStream() == pStream, "projected elsewhere");
                break;
            }
            case 5: plexa.StripOutTokens(pStream, a, b, Token()); break;
            case 6: {
                const int type = m_bTame ? bsmKeepBoth : Small();
                plexa.DeleteStreamItems(pStream, a, b,
                                        static_cast<BufferSyncMarkInsertionType>(type));
                break;
            }
            case 7:
                p = m_bTame ? Token() : Object();
                pStream = m_bTame && m_linked.count(p) ? p->GetStream() : Stream();
                p = pStream->RemoveStreamObj(p, m_in.Flag());
                if (p != nullptr) m_owned.push_back(p);
                break;
            case 8: Search(plexa, pStream, a, b); break;
            case 9: Tie(a, b); break;
            case 10: ChangeToken(Token()); break;
            case 11: Reset(plexa, Stream()); break;
            case 12: UseLists(plexa, a); break;
            case 13: MarkAndMeasure(plexa, pStream, a, b); break;
            case 14:
                p = Object();
                std::erase(m_owned, p);
                CStream::DiscardStreamObj(p);
                break;
            // Those that a tame input does not make.
            case 15: Stream()->InsertStreamObj(Fresh(pStream), Object(), Object()); break;
            case 16: Stream()->InsertStreamObj(Fresh(pStream), Small(), Object()); break;
            case 17:
                if ((p = Fresh(pStream)) != nullptr) p->LinkBetween(Object(), Object());
                break;
            case 18:
                if ((m_pLoose = Object()) != nullptr) m_pLoose->UnLink();
                break;
            case 19:
                if ((m_pLoose = a) != nullptr && b != nullptr) *a = *b;
                break;
            case 20:
                if (CToken* pToken = Token(); CToken* pSource = Token()) {
                    if ((m_pLoose = pToken) != nullptr) *pToken = *pSource;
                }
                break;
            case 21: plexa.DeleteStreamSyncMark(pStream, a); break;
            case 22:
                plexa.InsertStreamObject(pStream, a, b, Fresh(pStream),
                                         static_cast<InsertionLocationType>(Small()));
                break;
            case 23: Cut(Stream(), a, b); break;
            case 24:
                Stream()->InsertSection(Object(), Object(), m_in.Flag() ? &a : nullptr,
                                        m_in.Flag() ? &b : nullptr);
        }
    }

    // Operands: now and then null, of the other container, or in no stream.
    CStream* Stream() {
        const unsigned n = m_in.Byte();
        return (n < 240 ? m_pMain : m_pOther)->plexa.pStream(static_cast<int>(n % 3));
    }
    CStreamObj* Object() {
        const unsigned n = m_in.Below(16);
        if (n == 15) return nullptr;
        if (n > 12 && !m_owned.empty()) return m_owned[m_in.Below(m_owned.size())];
        const std::vector<CStreamObj*> chain = mlds_test::Chain(Stream());
        return chain[m_in.Below(chain.size())];
    }
    CSyncMark* Mark() {
        CStreamObj* p = Object();
        return p != nullptr && p->GetObjectType(otToken) ? p->GetNextSyncMark()
                                                         : static_cast<CSyncMark*>(p);
    }
    CToken* Token() {
        CStreamObj* p = Object();
        return p != nullptr && p->GetObjectType(otSyncMark) ? p->GetNextToken()
                                                            : static_cast<CToken*>(p);
    }
    int Small() { return static_cast<int>(m_in.Below(6)) - 1; }
    const char* Text() { return kTexts[m_in.Below(m_bTame ? kOwnTexts : kTexts.size())]; }

    // An object to insert, not always one that may be inserted. What is made here is owned here
    // until it turns up in a stream.
    CStreamObj* Fresh(CStream* pStream) {
        CToken* pToken = Token();
        CStreamObj* p = nullptr;
        switch (m_in.Below(m_bTame ? 4 : 6)) {
            case 0: p = m_pMain->plexa.CreateSyncMark(pStream); break;
            case 1: p = pStream != nullptr ? pStream->CreateToken(Text()) : nullptr; break;
            case 2: p = new CToken(pToken); break;
            case 3: return m_bTame && pToken && pToken->GetStream() != pStream ? nullptr : pToken;
            case 4: p = pToken != nullptr ? new CToken(*pToken) : nullptr; break;
            case 5:
                if (CSyncMark* pMark = Mark()) p = new CSyncMark(*pMark);
        }
        if (p != nullptr) m_owned.push_back(p);
        return m_bTame && p != nullptr && p->GetStream() != pStream ? nullptr : p;
    }

    void Search(CPlexa& plexa, CStream* pStream, CSyncMark* a, CSyncMark* b) {
        const auto direction = static_cast<ScanDirectionType>(Small());
        CSyncMark* pNearest = plexa.Context(pStream, a, direction);
        const bool bThere = pNearest == nullptr || pNearest->GetStream() == pStream;
        Require(bThere || !m_bTame, "found elsewhere");
        plexa.CSMSearch(a, b, direction);
        plexa.Adjacent(a, b);
        plexa.Move(pStream, a, direction);
        plexa.BracketToken(a, direction, &m_x, &m_y, pStream, Stream());
        Stream()->GetStr(a, b, m_in.Flag());
        Stream()->GetNumTokens(a, b, m_in.Flag());
        Stream()->GetNumSyncMarks(a, b);
        if (a == nullptr) return;
        a->UptoTokens(direction, Small());
        a->OverTokens(direction, Small());
        a->GetAdjacentStreamObj(direction, static_cast<ObjectType>(Small()), m_in.Flag());
    }

    void Tie(CSyncMark* a, CSyncMark* b) {
        if (a == nullptr) return;
        // Marks in no stream may be tied, and a mark that is alone displaces a group's member.
        const bool bTame = b != nullptr && m_linked.count(a) == 1 && m_linked.count(b) == 1 &&
                           !a->IsSynchronous(b->GetStream()) && !b->IsSynchronous(a->GetStream());
        if (bTame || !m_bTame) a->SetToSynchronous(b, m_in.Flag());
    }

    void ChangeToken(CToken* pToken) {
        m_t = pToken;
        if (pToken == nullptr) return;
        pToken->SetFieldValue(Small(), Text());
        pToken->SetFieldValue(Small(), Small());
        pToken->GetFieldValueString(Small());
        pToken->TokenCompare(Token());
        pToken->TokenCopy(Token());
        pToken->IsItA("name", Text());
        if (m_in.Flag()) pToken->ResetFieldValuesToDefault();
    }

    void MarkAndMeasure(CPlexa& plexa, CStream* pStream, CSyncMark* a, CSyncMark* b) {
        Fresh(pStream);
        plexa.Mark(m_in.Flag() ? "[<name:t $t.name>]" : "%inp <h $u.stress>", a, b);
        plexa.Mark(pStream, "stress", Small(), a, b);
        plexa.Duration(pStream, a, Small(), b, Small());
        plexa.SetDuration(pStream, a, b, Small() * 900);
        if (pStream != nullptr) pStream->CompareSection(a, b, Mark(), Mark());
    }

    // What is cut out is owned here, and so can be discarded and put back one by one too.
    void Cut(CStream* pStream, CSyncMark* a, CSyncMark* b) {
        pStream->DeSyncSection(Mark(), b);
        CStreamObj *pFirst = nullptr, *pLast = nullptr;
        const auto type = static_cast<BufferSyncMarkInsertionType>(Small());
        if (!pStream->ExciseSection(a, b, &pFirst, &pLast, type)) return;
        for (CStreamObj* p = pFirst; p != nullptr; p = p->GetAdjacentStreamObj(sdRight)) {
            m_owned.push_back(p);
            if (p != pLast) continue;
            CSyncMark* pLeft = m_in.Flag() ? Mark() : nullptr;  // the bounds may be gone
            if (pLeft != nullptr) pStream->InsertSection(pFirst, pLast, &pLeft, nullptr);
            return;
        }
        Require(false, "a chain without its end");
    }

    void Reset(CPlexa& plexa, CStream* pStream) {
        switch (m_in.Below(16)) {
            case 0: plexa.CPlexaReset(); break;
            case 1: pStream->StreamReset(); break;
            case 2: pStream->Renumber(); break;
            case 3: pStream->AddField("stress"); break;
            case 4: plexa.AddStream("late"); break;
            case 5: plexa.Initialize(); break;
            case 6: plexa.RankPopulatedStreams(); break;
            default: plexa.Fence(Small(), m_in.Flag());
        }
    }

    void UseLists(CPlexa& plexa, CSyncMark* a) {
        m_x = a;
        m_u = Token();
        const unsigned what = m_in.Below(12);
        if (what == 0 && m_lists.size() < kMostLists) {
            m_lists.push_back(std::make_unique<CVarList>(m_in.Flag() ? &m_pOther->plexa : &plexa));
            m_lists.back()->AddSyncMarkPtr("x", &m_x);
            m_lists.back()->AddTokenPtr("t", &m_t);
            m_lists.back()->AddSyncMarkPtrPtr("y", &m_y);
            m_lists.back()->AddTokenPtr("u", &m_u);
        }
        if (what == 1) plexa.PopVarListStack();
        if (m_lists.empty()) return;
        auto& pList = m_lists[m_in.Below(m_lists.size())];
        const int i = Small();
        switch (what) {
            case 2: plexa.PushVarListStack(pList.get()); break;
            case 3: *pList = *m_lists.back(); break;
            case 4: pList->SetFence("inp, syl"); break;
            case 5: pList->SetFence(Stream(), nullptr, Stream(), nullptr, nullptr); break;
            case 6: m_lists.erase(m_lists.begin() + (&pList - m_lists.data())); break;
            case 7: pList->SetSyncMarkPtr(i, a); break;
            case 8: pList->SetTokenPtr(i, m_u); break;
            case 9: pList->UnsetSyncMarkPtr(i); break;
            case 10: pList->UnsetTokenPtr(i); break;
            case 11: i == 0 ? pList->ReSetForUse() : pList->DoAssignmentsAndClear(i > 1);
        }
    }

    // After a call: what turned up in a stream is not owned here any more, and host variables do
    // not point at what is gone.
    void Settle(bool bIndices) {
        if (m_linked.size() > kMostObjects) m_pMain->plexa.CPlexaReset();
        m_linked.clear();
        for (const auto& pTiers : {m_pMain, m_pOther}) {
            mlds_fuzz::CollectLinked(pTiers->plexa, m_linked, bIndices);
        }
        std::erase_if(m_owned, [&](CStreamObj* p) { return p == m_pLoose || m_linked.count(p); });
        if (m_pLoose != nullptr && m_linked.count(m_pLoose) == 0) m_owned.push_back(m_pLoose);
        m_pLoose = nullptr;
        std::unordered_set<CStreamObj*> alive = m_linked;
        alive.insert(m_owned.begin(), m_owned.end());
        for (CSyncMark** pp : {&m_x, &m_y}) *pp = alive.count(*pp) ? *pp : nullptr;
        for (CToken** pp : {&m_t, &m_u}) *pp = alive.count(*pp) ? *pp : nullptr;
    }

    void RequireWhole(bool bIndices) {
        for (const auto& pTiers : {m_pMain, m_pOther}) {
            const std::string wrong =
                mlds_test::CheckStructure(pTiers->plexa, {true, true, bIndices});
            Require(wrong.empty(), wrong);
        }
    }

    Input m_in;
    const unsigned m_mode = m_in.Byte();
    const bool m_bTame = m_mode % 2 == 0;
    std::shared_ptr<Tiers> m_pMain{
        new Tiers{{"inp", "||h|o|l|a||"}, {"phone", "||t|a||t||", {"a", "t", "ai"}}, {"syl"}}};
    std::shared_ptr<Tiers> m_pOther{new Tiers{{"inp", "||h|a||"}, {"phone", "|||"}, {"syl"}}};
    std::vector<CStreamObj*> m_owned;
    std::vector<std::unique_ptr<CVarList>> m_lists;
    std::unordered_set<CStreamObj*> m_linked;
    CStreamObj* m_pLoose = nullptr;  // alive, and perhaps out of its stream by this call
    CSyncMark* m_x = nullptr;
    CSyncMark* m_y = nullptr;
    CToken* m_t = nullptr;
    CToken* m_u = nullptr;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size <= kMostBytes) Editor(Input(data, size));
    return 0;
}
