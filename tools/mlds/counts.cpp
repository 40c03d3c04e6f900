// mlds trace --counts: how often rules were tried and held.
#include "counts.h"

#include <algorithm>
#include <iomanip>
#include <iostream>

#include "inputs.h"
#include "program.h"

namespace mlds_program {

using namespace mlds::rules;

Counter::Counter(mlds::RuleHost& host) : RuleTrace(host, TraceDetail::places) {
    for (const Block& block : host.rules().model().blocks) {
        m_firstOfBlock.push_back(m_counts.size());
        for (const Rule& rule : block.rules) m_counts.push_back({&rule, 0, 0, {}});
    }
}

void Counter::Tried(const TriedRule& tried) {
    const auto block = static_cast<std::size_t>(tried.pRule->block);
    const auto rule = static_cast<std::size_t>(tried.pRule - tried.pBlock->rules.data());
    RuleCount& count = m_counts[m_firstOfBlock[block] + rule];
    ++count.nTried;
    if (tried.Holds()) {
        ++count.nHeld;
        return;
    }
    ++count.failedAt[std::string(host().rules().sources().TextOf(tried.failedAt))];
}

int TraceCounts(const std::shared_ptr<const mlds::RuleSet>& pRules, const TraceOptions& options) {
    mlds::RuleHost host(pRules);
    Counter counter(host);
    Inputs inputs(options.words);
    for (Utterance line; inputs.Next(line);) host.Run(line.text);

    std::vector<const RuleCount*> counts;
    for (const RuleCount& count : counter.counts()) counts.push_back(&count);
    const auto neverHeld = [](const RuleCount* p) { return p->nHeld == 0; };
    std::stable_partition(counts.begin(), counts.end(), neverHeld);
    std::cout << "   tried     held  line  rule, and what it mostly failed at\n";
    for (const RuleCount* pCount : counts) {
        std::cout << std::setw(8) << pCount->nTried << ' ' << std::setw(8) << pCount->nHeld << ' '
                  << std::setw(5) << pCount->pRule->span.line << "  " << pCount->pRule->text;
        const auto byCount = [](const auto& a, const auto& b) { return a.second < b.second; };
        const auto most =
            std::max_element(pCount->failedAt.begin(), pCount->failedAt.end(), byCount);
        if (most != pCount->failedAt.end() && !most->first.empty()) {
            std::cout << "   (" << most->first << ": " << most->second << ')';
        }
        std::cout << '\n';
    }
    return FlushOutput() && inputs.ok() ? kDone : kFailed;
}

}  // namespace mlds_program
