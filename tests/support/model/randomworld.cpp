// Random containers.
#include "support/model/randomworld.h"

#include <bit>

#include "support/model/layout.h"
#include "support/tiers.h"

namespace mlds_test {

namespace {

// Floats that compare in odd ways: both zeros, one that equals everything.
const float kFloats[] = {0.0F, -0.0F, 1.5F, std::bit_cast<float>(0x7FC00000)};

}  // namespace

RandomWorld::RandomWorld(Random& random) {
    const int nStreams = random.Between(1, 6);
    for (int i = 0; i < nStreams; ++i) {
        CStream* pStream = plexa.pStream(plexa.AddStream(("s" + std::to_string(i)).c_str()));
        CField* pName = pStream->AddField("name");
        const char* const values[] = {"a", "b", "c"};
        if (!random.OneIn(4)) pName->SetPossibleValues(values, 3);
        if (!random.OneIn(3)) pStream->AddField("number")->SetFieldType(fvInt);
        if (random.OneIn(3)) pStream->AddField("float")->SetFieldType(fvFloat);
    }
    plexa.Initialize();
    const bool bEarlyRanking = random.OneIn(8);
    for (int i = 0; i < nStreams; ++i) {
        if (bEarlyRanking && i == nStreams / 2) Rank();
        Fill(random, i);
    }
    if (!bEarlyRanking) Rank();
    TieByTime(random);
    if (random.OneIn(6)) TieAtRandom(random);
    for (int i = 0; i < nStreams; ++i) plexa.Fence(i, random.OneIn(5));
    if (!random.OneIn(8)) plexa.SetDefaultTimeStream(plexa.pStream(random.Below(nStreams)));

    const auto name = [&] { return m_names.emplace_back(1, char('A' + m_names.size())).c_str(); };
    markVariables = random.Between(2, 4);
    for (int i = 0; i < markVariables; ++i) {
        const bool bShared = i > 0 && random.OneIn(8);
        if (!bShared) m_marks.push_back(random.OneIn(8) ? nullptr : AnyMark(random, true));
        m_markOf.push_back(&m_marks.back());
        if (random.OneIn(2)) {
            varList.AddSyncMarkPtr(name(), &m_marks.back());
        } else {
            varList.AddSyncMarkPtrPtr(name(), &m_marks.back());
        }
    }
    tokenVariables = random.Between(1, 3);
    for (int i = 0; i < tokenVariables; ++i) {
        const bool bShared = i > 0 && random.OneIn(8);
        if (!bShared) m_tokens.push_back(random.OneIn(6) ? nullptr : AnyToken(random));
        m_tokenOf.push_back(&m_tokens.back());
        varList.AddTokenPtr(name(), &m_tokens.back());
    }
}

RandomWorld::~RandomWorld() {
    for (CToken* p : m_ownTokens) delete p;
}

void RandomWorld::Rank() {
    plexa.RankPopulatedStreams();
    ranking = RankedStreams(plexa);
}

CToken* RandomWorld::NewToken(Random& random, CStream* pStream) {
    CToken* pToken = pStream->CreateToken();
    for (int i = 0; i < pStream->GetNumFields(); ++i) {
        int value = random.Below(3);
        if (pStream->GetField(i)->GetFieldType() == fvFloat) {
            value = std::bit_cast<int>(kFloats[random.Below(4)]);
        }
        pToken->SetFieldValue(i, value);
    }
    return pToken;
}

// Tokens with one to three marks between; some streams have marks alone, or nothing.
void RandomWorld::Fill(Random& random, int stream) {
    CStream* pStream = plexa.pStream(stream);
    const auto append = [&](CStreamObj* p) {
        CStreamObj* pEnd = pStream->pGetLastStreamObj();
        pStream->InsertStreamObj(p, pEnd->GetPrevStreamObj(), pEnd);
    };
    const auto appendMarks = [&](int n) {
        for (; n > 0; --n) append(plexa.CreateSyncMark(pStream));
    };
    const int nTokens = random.OneIn(5) ? 0 : random.Between(1, 6);
    appendMarks(nTokens > 0 ? random.Between(1, 2) : random.Below(4));
    for (int i = 0; i < nTokens; ++i) {
        const int nMarks = random.OneIn(4) ? random.Between(2, 3) : 1;
        // The mark behind it first: no token may come to stand next to the end.
        appendMarks(1);
        CStreamObj* pMark = pStream->pGetLastStreamObj()->GetPrevStreamObj();
        pStream->InsertStreamObj(NewToken(random, pStream), pMark->GetPrevStreamObj(), pMark);
        appendMarks(nMarks - 1);
    }
}

// Every mark has a time that grows along its stream; what happens at one time is tied, mostly.
void RandomWorld::TieByTime(Random& random) {
    std::vector<CSyncMark*> at(40, nullptr);
    for (int i = 0; i < plexa.GetNumStreams(); ++i) {
        int time = random.Below(2);
        for (CStreamObj* p : Chain(plexa.pStream(i))) {
            if (p->GetObjectType(otToken) || p == plexa.pStream(i)->pGetFirstStreamObj()) continue;
            if (p == plexa.pStream(i)->pGetLastStreamObj() || time >= 40) continue;
            auto* pMark = static_cast<CSyncMark*>(p);
            CSyncMark*& pFirst = at[static_cast<std::size_t>(time)];
            if (pFirst == nullptr || random.OneIn(8)) {
                pFirst = pMark;
            } else if (!random.OneIn(4)) {
                pFirst->SetToSynchronous(pMark);
            }
            time += random.OneIn(3) ? 2 : 1;
        }
    }
}

// Ties across each other; some are refused, some displace a mark from its group.
void RandomWorld::TieAtRandom(Random& random) {
    for (int n = random.Between(1, 6); n > 0; --n) {
        CSyncMark* p = AnyMark(random, false);
        CSyncMark* pOther = AnyMark(random, false);
        if (p != nullptr && pOther != nullptr) p->SetToSynchronous(pOther);
    }
}

CSyncMark* RandomWorld::AnyMark(Random& random, bool bSentinels) {
    std::vector<CSyncMark*> marks;
    for (int i = 0; i < plexa.GetNumStreams(); ++i) {
        CStream* pStream = plexa.pStream(i);
        for (CStreamObj* p : Chain(pStream)) {
            const bool bEnd =
                p == pStream->pGetFirstStreamObj() || p == pStream->pGetLastStreamObj();
            if (p->GetObjectType(otToken) || (bEnd && !(bSentinels && random.OneIn(3)))) continue;
            marks.push_back(static_cast<CSyncMark*>(p));
        }
    }
    if (marks.empty()) return nullptr;
    return marks[static_cast<std::size_t>(random.Below(static_cast<int>(marks.size())))];
}

CToken* RandomWorld::AnyToken(Random& random) {
    CStream* pStream = plexa.pStream(random.Below(plexa.GetNumStreams()));
    if (pStream->GetNumTokens() > 0 && !random.OneIn(3)) {
        return Token(pStream, random.Below(pStream->GetNumTokens()));
    }
    m_ownTokens.push_back(NewToken(random, pStream));
    return m_ownTokens.back();
}

int RandomWorld::BoundMark(Random& random) const {
    int v = 0;
    for (int tries = 0; tries < 8; ++tries) {
        v = random.Below(markVariables);
        if (*m_markOf[static_cast<std::size_t>(v)] != nullptr) break;
    }
    return v;
}

int RandomWorld::StreamOfMark(int v) const {
    CSyncMark* p = *m_markOf[static_cast<std::size_t>(v)];
    return p != nullptr ? p->GetStream()->GetStreamIndex() : -1;
}

std::string RandomWorld::Bound(int v) {
    const auto k = static_cast<std::size_t>(v);
    if (v < markVariables) return Where(*m_markOf[k]);
    return Where(*m_tokenOf[k - static_cast<std::size_t>(markVariables)]);
}

std::string RandomWorld::Describe() {
    std::string text = Dump(plexa) + "fenced:";
    for (int i = 0; i < plexa.GetNumStreams(); ++i) {
        if (plexa.Fence(i)) text += " s" + std::to_string(i);
    }
    text += "\nranked:";
    for (const int i : ranking) text += " s" + std::to_string(i);
    CStream* pTime = plexa.GetDefaultTimeStream();
    text += std::string("\ntime: ") + (pTime != nullptr ? pTime->GetStreamName() : "none") + "\n";
    for (int i = 0; i < markVariables + tokenVariables; ++i) {
        text += "variable " + std::to_string(i) + ": " + Bound(i) + "\n";
    }
    return text;
}

}  // namespace mlds_test
