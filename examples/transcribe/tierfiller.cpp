// Filling one tier from the boundaries of another.
#include "tierfiller.h"

#include <algorithm>

#include "interval.h"
#include "require.h"

namespace transcribe {

TierFiller::TierFiller(CPlexa& plexa, CStream* pStream)
    : m_plexa(plexa), m_pStream(pStream), m_variables(&plexa) {}

const std::string& TierFiller::Variable(std::size_t i) {
    for (; m_nDeclared <= i; ++m_nDeclared) {
        m_names[m_nDeclared] = "begin" + std::to_string(m_nDeclared);
        m_variables.AddSyncMarkPtr(m_names[m_nDeclared].c_str(), &m_begins[m_nDeclared]);
    }
    return m_names[i];
}

void TierFiller::Fill(CSyncMark* pBegin, std::span<const Segment> segments) {
    const auto isEmpty = [](const Segment& segment) { return segment.items.empty(); };
    while (!segments.empty()) {
        const auto empty = std::find_if(segments.begin(), segments.end(), isEmpty);
        const auto full = static_cast<std::size_t>(empty - segments.begin());
        const std::size_t n = std::clamp<std::size_t>(full, 1, kRun);
        const auto run = segments.first(n);
        if (!isEmpty(run.front())) FillRun(pBegin, run);
        TieEnd(run.back().pEnd);
        pBegin = run.back().pEnd;
        segments = segments.subspan(n);
    }
}

// Inserts the items of all segments at once. A variable for each segment but the first gets the
// mark in front of the segment's first token.
void TierFiller::FillRun(CSyncMark* pBegin, std::span<const Segment> run) {
    std::string text = run.front().items;
    for (std::size_t i = 1; i < run.size(); ++i) {
        text += " !^" + Variable(i) + ' ' + run[i].items;
    }
    CSyncMark* pClosing = LastMark(m_pStream);
    Require(m_plexa.InsertString(m_pStream, text.c_str(), pBegin, pClosing), "InsertString");
    for (std::size_t i = 1; i < run.size(); ++i) {
        Require(run[i - 1].pEnd->SetToSynchronous(m_begins[i]), "SetToSynchronous");
    }
}

// Gives a mark a counterpart at the end of what has been filled. Tokens lie around that place, so
// the projection needs to be told from which side: it goes just left of the closing mark.
void TierFiller::TieEnd(CSyncMark* pEnd) {
    CSyncMark* pClosing = LastMark(pEnd->GetStream());
    Require(m_plexa.ProjectSyncMark(m_pStream, pEnd, pClosing) != nullptr, "ProjectSyncMark");
}

}  // namespace transcribe
