// What the formats of "mlds run" make of one utterance.
#include "formats.h"

#include <algorithm>
#include <exception>
#include <sstream>

#include "lanes.h"
#include "mlds/io/aligned.h"
#include "program.h"

namespace mlds_program {

using mlds::rules::Model;
using mlds::rules::Tier;
using mlds::rules::TierId;

namespace {

// The first tier of a kind, kNoTier if there is none.
TierId FirstOfKind(const Model& model, Tier::Kind kind) {
    const auto it = std::ranges::find(model.tiers, kind, &Tier::kind);
    return it != model.tiers.end() ? static_cast<TierId>(it - model.tiers.begin())
                                   : mlds::rules::kNoTier;
}

// IPA is written as far as the stress marks: over syllables, where these have one.
TierId IpaTier(const Model& model) {
    for (const mlds::rules::ShowMark& mark : model.showMarks) {
        if (mark.bIpa) return mark.tier;
    }
    return model.ipa.empty() ? model.shown : model.ipa.front().tier;
}

}  // namespace

bool PlanWork(const mlds::RuleSet& rules, Work& work) {
    const Model& model = rules.model();
    work.words = FirstOfKind(model, Tier::Kind::spans);
    if (IsTimed(work.format)) {
        if (FirstOfKind(model, Tier::Kind::time) != mlds::rules::kNoTier) return true;
        Complain(
            "the rules declare no tier of durations (tier time ms), and this format shows time");
        return false;
    }
    if (work.format == Format::phones) work.shown = model.shown;
    if (work.format == Format::ipa) work.shown = IpaTier(model);
    work.run.wanted = work.shown;
    return true;
}

Renderer::Renderer(std::shared_ptr<const mlds::RuleSet> pRules, const Work& work)
    : m_work(work),
      m_host(std::move(pRules)),
      m_view(LanesOf(m_host, work.format == Format::ipa)) {}

Rendered Renderer::Render(const std::string& text) noexcept {
    Rendered rendered;
    try {
        mlds::RunOutcome outcome = m_host.Run(text, m_work.run);
        rendered.faults = std::move(outcome.faults);
        if (outcome.bDone) Write(rendered);
        rendered.bDone = outcome.bDone;
    } catch (const std::exception& e) {
        rendered.error = e.what();
    }
    return rendered;
}

void Renderer::Write(Rendered& rendered) {
    switch (m_work.format) {
        case Format::tiers: {
            std::ostringstream out;
            mlds::io::PrintAligned(m_view, out);
            rendered.text = std::move(out).str();
            break;
        }
        case Format::phones: rendered.text = m_host.Shown(m_work.shown) + '\n'; break;
        case Format::ipa: {
            const bool bWords = m_work.words != mlds::rules::kNoTier;
            CStream* pWords = bWords ? m_host.plexa().pStream(m_work.words) : nullptr;
            const auto& lane = m_view.lanes[static_cast<std::size_t>(m_work.shown)];
            rendered.text = mlds::io::TokenLine(lane, pWords, {"", " "}) + '\n';
            break;
        }
        case Format::textGrid:
        case Format::svg: rendered.timeline = mlds::io::TimelineOf(m_view); break;
    }
}

}  // namespace mlds_program
