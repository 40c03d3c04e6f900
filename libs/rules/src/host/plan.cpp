// Which blocks are needed for what is wanted.
#include "host/plan.h"

#include <algorithm>

namespace mlds::rules {

namespace {

using Tiers = std::vector<bool>;

void AddReads(const Pattern& pattern, Tiers& reads) {
    if (pattern.tier != kNoTier) reads[static_cast<std::size_t>(pattern.tier)] = true;
    for (const Pattern& part : pattern.parts) AddReads(part, reads);
}

TierId TimeTier(const Model& model) {
    for (std::size_t i = 0; i < model.tiers.size(); ++i) {
        if (model.tiers[i].kind == Tier::Kind::time) return static_cast<TierId>(i);
    }
    return kNoTier;
}

// What a step looks at, and what it changes.
struct Use {
    Tiers reads;
    Tiers writes;
};

class Planner {
public:
    explicit Planner(const Model& model) : m_model(model) {
        AddSteps();
        for (const Step& step : m_steps) m_uses.push_back(UseOf(step));
    }

    std::vector<Step> For(TierId wanted) const {
        if (wanted == kNoTier) return m_steps;
        Tiers needed = None();
        needed[static_cast<std::size_t>(wanted)] = true;
        for (const ShowBy& show : m_model.showBy) {
            if (show.tier == wanted) needed[static_cast<std::size_t>(show.by)] = true;
        }
        // What a needed step looks at is needed too, until nothing is added any more.
        std::vector<bool> chosen(m_steps.size(), false);
        for (bool bAdded = true; bAdded;) {
            bAdded = false;
            for (std::size_t i = 0; i < m_steps.size(); ++i) {
                if (chosen[i] || !Meet(m_uses[i].writes, needed)) continue;
                chosen[i] = bAdded = true;
                for (std::size_t t = 0; t < needed.size(); ++t) {
                    needed[t] = needed[t] || m_uses[i].reads[t];
                }
            }
        }
        std::vector<Step> steps;
        for (std::size_t i = 0; i < m_steps.size(); ++i) {
            if (chosen[i]) steps.push_back(m_steps[i]);
        }
        return steps;
    }

private:
    Tiers None() const { return Tiers(m_model.tiers.size(), false); }

    static bool Meet(const Tiers& a, const Tiers& b) {
        for (std::size_t i = 0; i < a.size(); ++i) {
            if (a[i] && b[i]) return true;
        }
        return false;
    }

    void AddSteps() {
        std::vector<TierId> later;
        for (std::size_t i = 0; i < m_model.tiers.size(); ++i) {
            const Tier& tier = m_model.tiers[i];
            if (tier.kind != Tier::Kind::spans) continue;
            const bool bOverLetters = tier.spanned == m_model.text.tier;
            if (bOverLetters) m_steps.push_back({Step::Kind::spans, static_cast<int>(i)});
            if (!bOverLetters) later.push_back(static_cast<TierId>(i));
        }
        for (std::size_t i = 0; i < m_model.lexicons.size(); ++i) {
            m_steps.push_back({Step::Kind::lexicon, static_cast<int>(i)});
        }
        for (std::size_t i = 0; i < m_model.blocks.size(); ++i) {
            const Step block{Step::Kind::block, static_cast<int>(i)};
            const Tiers reads = UseOf(block).reads;
            std::erase_if(later, [&](TierId tier) {
                const bool bNow = reads[static_cast<std::size_t>(tier)];
                if (bNow) m_steps.push_back({Step::Kind::spans, tier});
                return bNow;
            });
            m_steps.push_back(block);
        }
        for (const TierId tier : later) m_steps.push_back({Step::Kind::spans, tier});
    }

    Use UseOf(const Step& step) const {
        Use use{None(), None()};
        const auto mark = [](Tiers& tiers, TierId tier) {
            if (tier != kNoTier) tiers[static_cast<std::size_t>(tier)] = true;
        };
        switch (step.kind) {
            case Step::Kind::spans:
                mark(use.writes, step.index);
                mark(use.reads, m_model.tiers[static_cast<std::size_t>(step.index)].spanned);
                break;
            case Step::Kind::lexicon: {
                const LexiconFile& file = m_model.lexicons[static_cast<std::size_t>(step.index)];
                mark(use.reads, file.from);
                mark(use.writes, file.to);
                break;
            }
            case Step::Kind::block:
                AddBlock(m_model.blocks[static_cast<std::size_t>(step.index)], use);
                break;
        }
        return use;
    }

    void AddBlock(const Block& block, Use& use) const {
        use.reads[static_cast<std::size_t>(block.from)] = true;
        if (block.within != kNoTier) use.reads[static_cast<std::size_t>(block.within)] = true;
        const TierId into = block.to == kNoTier ? block.from : block.to;
        for (const Rule& rule : block.rules) {
            const TierId changed = rule.action == Action::scale ? TimeTier(m_model) : into;
            if (changed != kNoTier) use.writes[static_cast<std::size_t>(changed)] = true;
            AddReads(rule.focus, use.reads);
            for (const auto* pEnvironments : {&rule.where, &rule.except}) {
                for (const Environment& environment : *pEnvironments) {
                    AddReads(environment.left, use.reads);
                    AddReads(environment.right, use.reads);
                }
            }
        }
    }

    const Model& m_model;
    std::vector<Step> m_steps;
    std::vector<Use> m_uses;
};

}  // namespace

std::vector<Step> PlanFor(const Model& model, TierId wanted) {
    return Planner(model).For(wanted);
}

}  // namespace mlds::rules
