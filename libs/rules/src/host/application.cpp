// What a rule that holds does.
#include "host/blockrunner.h"

#include <algorithm>
#include <cstdint>

namespace mlds::rules {

namespace {

// Scaling works in thousandths within 32 bits, so a longer stretch is scaled in pieces.
constexpr int kLongestPiece = 400'000;

std::vector<CToken*> TokensBetween(CSyncMark* pLeft, CSyncMark* pRight) {
    std::vector<CToken*> tokens;
    for (CStreamObj* p = pLeft; p != nullptr && p != pRight; p = p->GetNextStreamObj()) {
        if (p->GetObjectType(otToken)) tokens.push_back(static_cast<CToken*>(p));
    }
    return tokens;
}

}  // namespace

bool BlockRunner::Apply(int rule, CSyncMark* pAt, CSyncMark* pEnd) {
    const Rule& what = At(rule);
    // A viewer shows the change when it is complete.
    const bool bWatched = m_plexa.HasViewer();
    if (bWatched) m_plexa.DelayMessageDisplay(true);
    bool bDone = true;
    if (what.action == Action::set) {
        Set(what, pAt, pEnd);
    } else if (what.action == Action::scale) {
        Scale(what, pAt, pEnd);
    } else {
        bDone = Fills() ? Fill(rule, pAt, pEnd) : Replace(rule, pAt, pEnd);
        m_plexa.RankPopulatedStreams();
    }
    if (bWatched) m_plexa.DelayMessageDisplay(false);
    if (m_pObserver != nullptr) m_pObserver->Applied(what, pAt, pEnd);
    return bDone;
}

// Both ends of the focus get their places in the other tier, whatever comes between them.
bool BlockRunner::Fill(int rule, CSyncMark* pAt, CSyncMark* pEnd) {
    CSyncMark* pLeft = m_carrier.Carry(pAt);
    CSyncMark* pRight = m_carrier.Carry(pEnd);
    if (pLeft == nullptr || pRight == nullptr) return false;
    if (At(rule).result.empty()) return true;
    if (!MayGrow(At(rule), 0, pAt)) return false;
    return Clear(m_pTo, pLeft, pRight) && InsertResult(rule, m_pTo, pLeft, pRight);
}

bool BlockRunner::Replace(int rule, CSyncMark* pAt, CSyncMark* pEnd) {
    const std::vector<CToken*> tokens = TokensBetween(pAt, pEnd);
    const std::vector<Piece>& result = At(rule).result;
    const auto isMark = [](const Piece& piece) { return piece.kind == Piece::Kind::mark; };
    const bool bOneForOne =
        tokens.size() == result.size() && std::none_of(result.begin(), result.end(), isMark);
    if (bOneForOne) return ReplaceEach(rule, tokens);
    return MayGrow(At(rule), tokens.size(), pAt) && Clear(m_pFrom, pAt, pEnd) &&
           InsertResult(rule, m_pFrom, pAt, pEnd);
}

// Where a rule would make too much, it is not carried out, and the text is given up.
bool BlockRunner::MayGrow(const Rule& rule, std::size_t nReplaced, CSyncMark* pAt) {
    const std::size_t nMade = rule.result.size();
    if (m_growth.Take(nMade > nReplaced ? nMade - nReplaced : 0)) return true;
    m_faults.push_back({pAt, "the rules have made more than " + std::to_string(m_growth.most()) +
                                 " tokens of this text, the last ones by " + rule.text +
                                 " in block " + m_block.name +
                                 "; does it lengthen what rules like it have made?"});
    return false;
}

// Tokens that are replaced one for one leave the marks between them, and keep their numbers.
bool BlockRunner::ReplaceEach(int rule, const std::vector<CToken*>& tokens) {
    const std::vector<Piece>& result = At(rule).result;
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        CToken* pNew = TokenOf(rule, result[i], m_pFrom);
        if (pNew == nullptr) return false;
        KeepNumbers(tokens[i], pNew, result[i]);
        CSyncMark* pLeft = tokens[i]->GetPrevSyncMark();
        m_pFrom->RemoveStreamObj(tokens[i], true);
        m_pFrom->InsertStreamObj(pNew, iwRightOf, pLeft);
    }
    return true;
}

void BlockRunner::KeepNumbers(CToken* pOld, CToken* pNew, const Piece& piece) {
    if (piece.kind == Piece::Kind::capture) return;  // the copy brings its own
    for (std::size_t f = 1; f < m_fromTier.fields.size(); ++f) {
        if (m_fromTier.fields[f].kind != Field::Kind::number) continue;
        const int field = static_cast<int>(f);
        bool bSet = false;
        for (const Setting& setting : piece.settings) bSet |= setting.field == field;
        if (!bSet) pNew->SetFieldValue(field, pOld->GetFieldValueIndex(field));
    }
}

void BlockRunner::Set(const Rule& rule, CSyncMark* pAt, CSyncMark* pEnd) {
    for (CToken* pToken : TokensBetween(pAt, pEnd)) {
        for (const Setting& setting : rule.settings) {
            pToken->SetFieldValue(setting.field, setting.value);
        }
    }
}

// To N per cent of what the focus lasts, in pieces whose thousandths fit.
void BlockRunner::Scale(const Rule& rule, CSyncMark* pAt, CSyncMark* pEnd) {
    CStream* pTime = m_plexa.GetDefaultTimeStream();
    CSyncMark* pLeft = pAt->GetCorrespondingSyncMark(pTime);
    CSyncMark* pRight = pEnd->GetCorrespondingSyncMark(pTime);
    if (pLeft == nullptr || pRight == nullptr) {
        m_faults.push_back({pAt, "this place has no counterpart in tier " +
                                     std::string(pTime->GetStreamName()) +
                                     ", so nothing was scaled"});
        return;
    }
    ScaleTime(m_plexa, pLeft, pRight, rule.percent);
}

void ScaleTime(CPlexa& plexa, CSyncMark* pLeft, CSyncMark* pRight, int percent) {
    CSyncMark* pBegin = pLeft;
    for (CSyncMark* p = pLeft; p != nullptr && p != pRight;) {
        p = p->GetNextSyncMark();
        const int duration = plexa.Duration(pBegin, p);
        if (p != pRight && duration < kLongestPiece / percent * 100) continue;
        if (duration > 0) {
            const std::int64_t scaled = std::int64_t{duration} * percent / 100;
            plexa.SetDuration(pBegin, p, static_cast<int>(scaled));
        }
        pBegin = p;
    }
}

bool BlockRunner::Clear(CStream* pStream, CSyncMark* pLeft, CSyncMark* pRight) {
    CStreamObj* p = pLeft->GetNextStreamObj();
    while (p != nullptr && p != pRight) {
        CStreamObj* pNext = p->GetNextStreamObj();
        pStream->RemoveStreamObj(p, true);
        p = pNext;
    }
    return p == pRight;
}

CToken* BlockRunner::TokenOf(int rule, const Piece& piece, CStream* pStream) {
    CToken* pToken = nullptr;
    if (piece.kind == Piece::Kind::capture) {
        CToken* pCaptured = m_tests.Captured(m_nBlock, rule, piece.variable);
        pToken = pCaptured != nullptr ? new CToken(pCaptured) : nullptr;
    } else {
        pToken = pStream->CreateToken(piece.name.c_str());
    }
    if (pToken == nullptr) return nullptr;
    for (const Setting& setting : piece.settings) {
        pToken->SetFieldValue(setting.field, setting.value);
    }
    return pToken;
}

// Between two neighbouring marks; every token but the first stands behind a new mark.
bool BlockRunner::InsertResult(int rule, CStream* pStream, CSyncMark* pLeft, CSyncMark* pRight) {
    bool bFirst = true;
    for (const Piece& piece : At(rule).result) {
        if (piece.kind == Piece::Kind::mark) {
            // The mark in front of the next token, which is made with that one; the last one of
            // the result is its right end.
            m_tests.BindMark(m_nBlock, rule, piece.variable, bFirst ? pLeft : pRight);
            continue;
        }
        if (!bFirst) {
            pLeft = m_plexa.CreateSyncMark(pStream);
            if (pLeft == nullptr || !pStream->InsertStreamObj(pLeft, iwLeftOf, pRight)) {
                CStream::DiscardStreamObj(pLeft);
                return false;
            }
        }
        bFirst = false;
        CToken* pToken = TokenOf(rule, piece, pStream);
        if (pToken == nullptr) return false;
        if (!pStream->InsertStreamObj(pToken, iwRightOf, pLeft)) {
            CStream::DiscardStreamObj(pToken);
            return false;
        }
    }
    return true;
}

// Old tokens keep the mark that is tied: in front of the mark if they are on its left, behind it if
// they are on its right; the new ones stand between it and a new mark.
bool BlockRunner::Insert(int rule, CSyncMark* pAt) {
    if (!MayGrow(At(rule), 0, pAt)) return false;
    CSyncMark* pNew = m_plexa.CreateSyncMark(m_pFrom);
    if (pNew == nullptr) return false;
    const bool bBehind = At(rule).bBehindToken;
    if (!m_pFrom->InsertStreamObj(pNew, bBehind ? iwLeftOf : iwRightOf, pAt)) {
        CStream::DiscardStreamObj(pNew);
        return false;
    }
    const bool bDone =
        bBehind ? InsertResult(rule, m_pFrom, pNew, pAt) : InsertResult(rule, m_pFrom, pAt, pNew);
    m_plexa.RankPopulatedStreams();
    if (m_pObserver != nullptr) m_pObserver->Applied(At(rule), pAt, pAt);
    return bDone;
}

}  // namespace mlds::rules
