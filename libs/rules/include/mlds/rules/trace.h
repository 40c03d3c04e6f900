// Why a rule held or did not.
#ifndef MLDS_RULES_TRACE_H
#define MLDS_RULES_TRACE_H

#include <memory>
#include <string>
#include <vector>

#include "mlds/mlds.h"
#include "mlds/rules/observer.h"
#include "mlds/rules/rulehost.h"

namespace mlds::rules {

/// One element of a rule that was looked at: where, what was wanted, what stood there.
struct TracedElement {
    Span span;                 ///< of the element in the rule
    CSyncMark* pAt = nullptr;  ///< in the tier that the element is about
    bool bLeftward = false;
    bool bFits = false;
    std::string wanted;  ///< "[front]", in the words of the rule
    std::string found;   ///< "e without front", "the edge of word"
};

/// One rule, tried at one place.
struct TriedRule {
    const Block* pBlock = nullptr;
    const Rule* pRule = nullptr;
    CSyncMark* pAt = nullptr;
    CSyncMark* pEnd = nullptr;  ///< of its focus; null if it did not hold
    /// Where it failed, "right of \"qu\""; what was wanted there, "[front] or #"; what was found.
    /// For a rule that held up to an exception, or found the other tier filled, `found` says it
    /// all.
    std::string where;
    std::string wanted;
    std::string found;
    Span failedAt;                        ///< the element in the rule; line 0 if none is to blame
    std::vector<TracedElement> elements;  ///< all, in the order in which they were looked at

    bool Holds() const { return pEnd != nullptr; }
    /// "right of "qu" wanted [front], found e without front"
    std::string Why() const;
};

/// How much a trace finds out about every rule.
enum class TraceDetail {
    places,    ///< where it failed, `failedAt` alone: enough to count
    words,     ///< also what was wanted and found
    elements,  ///< also every element that was looked at
};

/// Watches the rules of a host, and explains each. While it lives it is the observer of the host
/// and of its container's tests. The tiers come out the same.
class RuleTrace : public RuleObserver {
public:
    explicit RuleTrace(RuleHost& host, TraceDetail detail = TraceDetail::words);
    ~RuleTrace() override;
    RuleTrace(const RuleTrace&) = delete;
    RuleTrace& operator=(const RuleTrace&) = delete;

    void BeforeRule(const Rule& rule, CSyncMark* pAt) final;
    void AfterRule(const Rule& rule, CSyncMark* pAt, CSyncMark* pEnd) final;

protected:
    /// A rule has been tried; what it does, if it held, has not been done yet.
    virtual void Tried(const TriedRule&) {}

    RuleHost& host() { return m_host; }

private:
    class Watcher;

    RuleHost& m_host;
    std::unique_ptr<Watcher> m_pWatcher;
};

}  // namespace mlds::rules

#endif
