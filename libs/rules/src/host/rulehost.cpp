// A container with the tiers of a rule set, and what fills it.
#include "mlds/rules/rulehost.h"

#include <new>
#include <stdexcept>

#include "host/blockrunner.h"
#include "host/fill.h"
#include "host/labels.h"
#include "host/plan.h"
#include "host/tiers.h"

namespace mlds {

using namespace rules;

namespace {

// Where in the text, as typed, places of other tiers are. Faults come from left to right, so every
// walk back ends at the place before.
class Columns {
public:
    explicit Columns(CPlexa& plexa) : m_pText(plexa.pStream(kTextTier)) {}

    /// 1 for a place that has no counterpart in the text.
    std::size_t Of(CSyncMark* pMark) {
        CSyncMark* pTyped = nullptr;
        for (CSyncMark* p = pMark; p != nullptr && pTyped == nullptr; p = p->GetPrevSyncMark()) {
            pTyped = p->GetCorrespondingSyncMark(m_pText);
        }
        std::size_t column = 1;
        CStreamObj* p = pTyped;
        for (; p != nullptr && p != m_pLast; p = p->GetPrevStreamObj()) {
            if (p->GetObjectType(otToken)) ++column;
        }
        if (p != nullptr) column += m_lastColumn - 1;
        m_pLast = pTyped;
        m_lastColumn = column;
        return column;
    }

private:
    CStream* m_pText;
    CSyncMark* m_pLast = nullptr;
    std::size_t m_lastColumn = 1;
};

// What rules start from: characters, and letters, of which expansions make many.
std::size_t SizeOf(const ReadText& text) {
    std::size_t size = text.characters.size();
    for (const ReadText::Segment& segment : text.segments) size += segment.letters.size();
    return size;
}

}  // namespace

struct RuleHost::Parts {
    // The container comes first and goes last: variables and tests belong to it.
    Parts(std::shared_ptr<const RuleSet> pSet, std::unique_ptr<CPlexa> pMade, CPlexa& container)
        : pRules(std::move(pSet)),
          pOwn(std::move(pMade)),
          plexa(container),
          reader(pRules->model()),
          tests(plexa, pRules->compiled()) {}

    RunOutcome Run(std::string_view text, const RunOptions& options);
    bool RunSteps(const RunOptions& options, Growth growth, RunOutcome& outcome);

    std::shared_ptr<const RuleSet> pRules;
    std::unique_ptr<CPlexa> pOwn;
    CPlexa& plexa;
    TextReader reader;
    RuleTests tests;
    RuleObserver* pObserver = nullptr;
    TierId plannedFor = kNoTier;
    bool bPlanned = false;
    std::vector<Step> plan;
};

bool RuleHost::Parts::RunSteps(const RunOptions& options, Growth growth, RunOutcome& outcome) {
    if (!bPlanned || plannedFor != options.wanted) {
        plan = PlanFor(pRules->model(), options.wanted);
        plannedFor = options.wanted;
        bPlanned = true;
    }
    const CompiledRules& compiled = pRules->compiled();
    Columns columns(plexa);
    std::vector<BlockFault> faults;
    for (const Step& step : plan) {
        bool bDone = true;
        switch (step.kind) {
            case Step::Kind::spans: bDone = FillSpans(plexa, compiled, tests, step.index); break;
            case Step::Kind::lexicon:
                bDone = FillFromLexicon(plexa, compiled, static_cast<std::size_t>(step.index));
                break;
            case Step::Kind::block:
                bDone = BlockRunner(plexa, compiled, tests, step.index, pObserver, growth, faults)
                            .Run();
                break;
        }
        for (const BlockFault& fault : faults) {
            outcome.faults.push_back({columns.Of(fault.pAt), fault.what});
        }
        faults.clear();
        if (!bDone) return false;
    }
    return true;
}

RunOutcome RuleHost::Parts::Run(std::string_view text, const RunOptions& options) {
    RunOutcome outcome;
    plexa.CPlexaReset();
    ReadText read = reader.Read(text, options.unknown);
    outcome.faults = std::move(read.faults);
    if (options.unknown == Unknown::error && !outcome.faults.empty()) return outcome;
    outcome.bDone =
        FillText(plexa, pRules->model(), read) && RunSteps(options, Growth(SizeOf(read)), outcome);
    CStream* pTime = plexa.GetDefaultTimeStream();
    if (outcome.bDone && pTime != nullptr && options.ratePercent != 100) {
        ScaleTime(plexa, pTime->pGetFirstStreamObj(), pTime->pGetLastStreamObj(),
                  100 * 100 / options.ratePercent);
    }
    return outcome;
}

RuleHost::RuleHost(std::shared_ptr<const RuleSet> pRules) {
    auto pOwn = std::make_unique<CPlexa>(nullptr);
    if (!DeclareTiers(*pOwn, pRules->model())) throw std::bad_alloc();
    CPlexa& plexa = *pOwn;
    m_pParts = std::make_unique<Parts>(std::move(pRules), std::move(pOwn), plexa);
}

RuleHost::RuleHost(std::shared_ptr<const RuleSet> pRules, CPlexa& plexa) {
    const std::string difference = DifferenceOfTiers(plexa, pRules->model());
    if (!difference.empty()) throw std::invalid_argument(difference);
    m_pParts = std::make_unique<Parts>(std::move(pRules), nullptr, plexa);
}

RuleHost::~RuleHost() = default;

RunOutcome RuleHost::Run(std::string_view text, const RunOptions& options) {
    return m_pParts->Run(text, options);
}

CPlexa& RuleHost::plexa() {
    return m_pParts->plexa;
}

const RuleSet& RuleHost::rules() const {
    return *m_pParts->pRules;
}

std::string RuleHost::Shown(TierId tier) {
    return ShownTier(rules().model(), plexa(), tier);
}

std::string RuleHost::Ipa(TierId tier) {
    return IpaOfTier(rules().model(), plexa(), tier);
}

std::string RuleHost::Label(CToken* pToken, bool bIpa) {
    const TierId tier = pToken->GetStream()->GetStreamIndex();
    if (tier == kTextTier) {
        return m_pParts->reader.CharacterOf(pToken->GetFieldValueIndex(kNameField));
    }
    return LabelOf(rules().model(), plexa(), pToken, bIpa);
}

void RuleHost::SetObserver(RuleObserver* pObserver) {
    m_pParts->pObserver = pObserver;
}

}  // namespace mlds
