// Why a rule held or did not, from what the interpreter tells about its instructions.
#include "mlds/rules/trace.h"

#include <algorithm>
#include <array>

#include "compiled.h"
#include "mlds/testasm/model.h"
#include "trace/found.h"

namespace mlds::rules {

namespace {

constexpr unsigned char kNot = 6;
constexpr int kContinuation = 4;

int TokensBetween(CSyncMark* pFrom, CSyncMark* pTo, bool bLeftward) {
    int n = 0;
    for (CStreamObj* p = pFrom; p != nullptr;
         p = bLeftward ? p->GetPrevStreamObj() : p->GetNextStreamObj()) {
        if (p == pTo) return n;
        if (p->GetObjectType(otToken)) ++n;
    }
    return -1;
}

// How far a rule had got when an element did not fit. What counts more stands first: a left
// environment is judged when all else has been found.
struct Reach {
    int stage = -1;  // the focus, the right environment, the left one
    int tokens = 0;  // passed in the block's tier
    int inside = 0;  // instructions deeper, where the element stands in another tier

    auto operator<=>(const Reach&) const = default;
};

struct Miss {
    Reach reach;
    const Element* pElement = nullptr;
    CSyncMark* pAt = nullptr;
    bool bLeftward = false;
};

}  // namespace

std::string TriedRule::Why() const {
    if (wanted.empty()) return found;
    return where + " wanted " + wanted + ", found " + found;
}

// Follows the tests of one rule. An instruction fails by itself if it fails without having gone on
// to its continuation; what fails inside of a negation is what the negation wants.
class RuleTrace::Watcher final : public CPlexaTestObserver {
public:
    Watcher(RuleHost& host, TraceDetail detail)
        : m_host(host), m_compiled(host.rules().compiled()), m_detail(detail) {}

    void Begin(const Rule& rule, CSyncMark* pAt) {
        m_pRule = &rule;
        m_pAt = pAt;
        m_misses.clear();
        m_elements.clear();
        m_orders.clear();
        m_nInstructions = 0;
        m_bException = false;
        m_bHeld = false;
    }

    TriedRule End(CSyncMark* pEnd) {
        TriedRule tried;
        tried.pRule = m_pRule;
        tried.pBlock = &m_host.rules().model().blocks[static_cast<std::size_t>(m_pRule->block)];
        tried.pAt = m_pAt;
        tried.pEnd = pEnd;
        // A first token is looked at once more where the pattern itself begins.
        const auto isSame = [](const TracedElement& a, const TracedElement& b) {
            return a.span == b.span && a.pAt == b.pAt && a.bLeftward == b.bLeftward &&
                   a.bFits == b.bFits;
        };
        m_elements.erase(std::unique(m_elements.begin(), m_elements.end(), isSame),
                         m_elements.end());
        tried.elements = std::move(m_elements);
        if (pEnd == nullptr) Explain(tried);
        m_pRule = nullptr;
        return tried;
    }

    void BeforeTest(const char*, int base) override {
        const auto isBefore = [](int b, const LoweredTest& test) { return b < test.base; };
        const auto& tests = m_compiled.lowered.tests;
        const auto it = std::upper_bound(tests.begin(), tests.end(), base, isBefore);
        m_pTest = it == tests.begin() ? nullptr : &*(it - 1);
        m_frames.clear();
        // Runs of spanning tiers are tested too, and are no rule's business.
        if (m_pRule == nullptr) m_pTest = nullptr;
        if (m_pTest == nullptr) return;
        const int index = static_cast<int>(m_pTest - tests.data());
        const LoweredRule& lowered = LoweredOf(*m_pRule);
        const auto at = std::find(lowered.except.begin(), lowered.except.end(), index);
        m_bException = at != lowered.except.end();
        if (m_bException) m_exception = static_cast<std::size_t>(at - lowered.except.begin());
    }

    void AfterTest(bool bHolds) override {
        if (m_bException && bHolds) return;
        if (!m_bException && bHolds) m_bHeld = true;
        if (m_bException) m_bException = false;
    }

    void BeforeInstruction(const CPlexaTestStep& step) override {
        Frame frame;
        frame.nNegations = m_frames.empty() ? 0 : m_frames.back().nNegations;
        if (!m_frames.empty()) {
            Frame& parent = m_frames.back();
            if (step.index == parent.continuation) {
                parent.bWentOn = true;
            } else if (parent.bNot) {
                ++frame.nNegations;
            }
        }
        frame.bNot = step.instruction[0] == kNot;
        frame.continuation =
            step.instruction[kContinuation] != 0 ? step.instruction[kContinuation] : -1;
        frame.pAt = MarkOf(step.position);
        frame.order = m_nInstructions++;
        m_frames.push_back(frame);
    }

    void AfterInstruction(const CPlexaTestStep& step, PTestFuncReturnType result) override {
        if (m_frames.empty()) return;
        const Frame frame = m_frames.back();
        m_frames.pop_back();
        if (m_pTest == nullptr || frame.nNegations > 0 || m_bException) return;
        const auto index = static_cast<std::size_t>(step.index);
        if (index >= m_pTest->elements.size()) return;
        const Element& element = m_pTest->elements[index];
        if (!element.bDecides && !element.bStaysWithin) return;
        const bool bFits = result.truth || frame.bWentOn;
        const bool bLeftward = step.direction == sdLeft;
        if (m_detail == TraceDetail::elements && (element.bDecides || !bFits))
            Keep(element, frame, bLeftward, bFits);
        if (!bFits)
            m_misses.push_back(
                {ReachOf(element, frame.pAt, bLeftward), &element, frame.pAt, bLeftward});
    }

private:
    struct Frame {
        CSyncMark* pAt = nullptr;
        std::size_t order = 0;  ///< among the instructions of the rule
        int continuation = -1;
        int nNegations = 0;
        bool bNot = false;
        bool bWentOn = false;
    };

    static CSyncMark* MarkOf(CStreamObj* p) {
        return p != nullptr && p->GetObjectType(otSyncMark) ? static_cast<CSyncMark*>(p) : nullptr;
    }

    const LoweredRule& LoweredOf(const Rule& rule) const {
        const Block& block = m_compiled.model.blocks[static_cast<std::size_t>(rule.block)];
        const auto index = static_cast<std::size_t>(&rule - block.rules.data());
        return m_compiled.lowered.rules[static_cast<std::size_t>(rule.block)][index];
    }

    Reach ReachOf(const Element& element, CSyncMark* pAt, bool bLeftward) const {
        Reach reach;
        reach.stage = element.part == Element::Part::left    ? 2
                      : element.part == Element::Part::right ? 1
                                                             : 0;
        if (pAt != nullptr && pAt->GetStream() == m_pAt->GetStream()) {
            reach.tokens = TokensBetween(m_pAt, pAt, bLeftward);
        } else {
            // In another tier: as far as the last place in this one.
            for (auto it = m_frames.rbegin(); it != m_frames.rend() && reach.inside == 0; ++it) {
                if (it->pAt == nullptr || it->pAt->GetStream() != m_pAt->GetStream()) continue;
                reach.tokens = TokensBetween(m_pAt, it->pAt, bLeftward);
                reach.inside = static_cast<int>(m_frames.size());
            }
        }
        return reach;
    }

    TierId TierAt(CSyncMark* pAt) const {
        return pAt != nullptr ? pAt->GetStream()->GetStreamIndex()
                              : m_pAt->GetStream()->GetStreamIndex();
    }

    std::string Found(const Element& element, CSyncMark* pAt, bool bLeftward) {
        const Pattern* p = element.pPattern;
        if (element.bStaysWithin) {
            const Block& block = m_compiled.model.blocks[static_cast<std::size_t>(m_pRule->block)];
            return "the edge of " +
                   m_compiled.model.tiers[static_cast<std::size_t>(block.within)].name;
        }
        const Condition* pCondition = p->kind == Pattern::Kind::token ? &p->condition : nullptr;
        if (p->kind == Pattern::Kind::lookNot && p->parts.front().kind == Pattern::Kind::in)
            p = &p->parts.front();
        if (p->kind == Pattern::Kind::in) return FoundIn(*p, pAt, bLeftward);
        return FoundText(m_host, pAt, bLeftward, pCondition);
    }

    // What lies over the next token in the tier that was asked.
    std::string FoundIn(const Pattern& in, CSyncMark* pAt, bool bLeftward) {
        CStream* pTier = m_host.plexa().pStream(in.tier);
        const std::string name = m_compiled.model.tiers[static_cast<std::size_t>(in.tier)].name;
        CSyncMark* pOver = nullptr;
        for (CSyncMark* p = pAt; p != nullptr && pOver == nullptr;
             p = bLeftward ? p->GetNextSyncMark() : p->GetPrevSyncMark()) {
            pOver = p->GetCorrespondingSyncMark(pTier);
        }
        if (pOver == nullptr) return "nothing in tier " + name;
        CStreamObj* pNext = bLeftward ? pOver->GetPrevStreamObj() : pOver->GetNextStreamObj();
        if (pNext == nullptr || !pNext->GetObjectType(otToken)) return "nothing in tier " + name;
        return "in " + name + ' ' + FoundText(m_host, pOver, bLeftward, &in.condition);
    }

    void Keep(const Element& element, const Frame& frame, bool bLeftward, bool bFits) {
        CSyncMark* const pAt = frame.pAt;
        TracedElement traced;
        traced.span = element.pPattern->span;
        traced.pAt = pAt;
        traced.bLeftward = bLeftward;
        traced.bFits = bFits;
        traced.wanted = WantedText(m_host.rules(), TierAt(pAt), *element.pPattern);
        traced.found = Found(element, pAt, bLeftward);
        // Whether an element fits is known when all that follows it has been looked at.
        const auto at = std::upper_bound(m_orders.begin(), m_orders.end(), frame.order);
        m_elements.insert(m_elements.begin() + (at - m_orders.begin()), std::move(traced));
        m_orders.insert(at, frame.order);
    }

    std::string Where(const Miss& miss) {
        if (miss.reach.tokens <= 0) return miss.bLeftward ? "left of |" : "right of |";
        CSyncMark* pNear = miss.pAt;
        if (pNear == nullptr || pNear->GetStream() != m_pAt->GetStream()) {
            return miss.bLeftward ? "left of |" : "right of |";
        }
        const std::string passed =
            miss.bLeftward ? TokensText(m_host, pNear, m_pAt) : TokensText(m_host, m_pAt, pNear);
        return (miss.bLeftward ? "left of \"" : "right of \"") + passed + '"';
    }

    // The furthest place that any branch reached, and all that would have done there.
    void Explain(TriedRule& tried) {
        if (m_bHeld && m_bException) {
            const Environment& exception = m_pRule->except[m_exception];
            tried.found = "the exception holds: " +
                          std::string(m_host.rules().sources().TextOf(exception.span));
            tried.failedAt = exception.span;
            return;
        }
        if (m_bHeld) {
            tried.found =
                "there is something in tier " +
                m_compiled.model.tiers[static_cast<std::size_t>(std::max(tried.pBlock->to, 0))]
                    .name +
                " already";
            return;
        }
        const auto isNearer = [](const Miss& a, const Miss& b) { return a.reach < b.reach; };
        const auto furthest = std::max_element(m_misses.begin(), m_misses.end(), isNearer);
        if (furthest == m_misses.end()) {
            tried.found = "it does not end in this tier";
            return;
        }
        // Of several elements wanted there, one that asks for features says most of what it found.
        const Miss* pTold = &*furthest;
        std::vector<std::string> wanted;
        for (const Miss& miss : m_misses) {
            if (miss.reach != furthest->reach || miss.pAt != furthest->pAt) continue;
            const Pattern& pattern = *miss.pElement->pPattern;
            if (pattern.kind == Pattern::Kind::token && !miss.pElement->bStaysWithin) pTold = &miss;
            if (m_detail == TraceDetail::places) break;
            std::string text = WantedText(m_host.rules(), TierAt(miss.pAt), pattern);
            if (std::find(wanted.begin(), wanted.end(), text) == wanted.end()) {
                wanted.push_back(std::move(text));
            }
        }
        tried.failedAt = pTold->pElement->pPattern->span;
        if (m_detail == TraceDetail::places) return;
        tried.where = Where(*pTold);
        tried.found = Found(*pTold->pElement, pTold->pAt, pTold->bLeftward);
        for (const std::string& text : wanted) {
            tried.wanted += (tried.wanted.empty() ? "" : " or ") + text;
        }
    }

    RuleHost& m_host;
    const CompiledRules& m_compiled;
    TraceDetail m_detail;
    const Rule* m_pRule = nullptr;
    CSyncMark* m_pAt = nullptr;
    const LoweredTest* m_pTest = nullptr;
    std::vector<Frame> m_frames;
    std::vector<Miss> m_misses;
    std::vector<TracedElement> m_elements;
    std::vector<std::size_t> m_orders;  ///< of the elements
    std::size_t m_nInstructions = 0;
    bool m_bException = false;  // an exception is being asked, and has held if the rule ends so
    std::size_t m_exception = 0;
    bool m_bHeld = false;
};

RuleTrace::RuleTrace(RuleHost& host, TraceDetail detail)
    : m_host(host), m_pWatcher(std::make_unique<Watcher>(host, detail)) {
    m_host.SetObserver(this);
    m_host.plexa().SetTestObserver(m_pWatcher.get());
}

RuleTrace::~RuleTrace() {
    m_host.plexa().SetTestObserver(nullptr);
    m_host.SetObserver(nullptr);
}

void RuleTrace::BeforeRule(const Rule& rule, CSyncMark* pAt) {
    m_pWatcher->Begin(rule, pAt);
}

void RuleTrace::AfterRule(const Rule&, CSyncMark*, CSyncMark* pEnd) {
    Tried(m_pWatcher->End(pEnd));
}

}  // namespace mlds::rules
