// Watching rules run.
#ifndef MLDS_RULES_OBSERVER_H
#define MLDS_RULES_OBSERVER_H

#include "mlds/mlds.h"
#include "mlds/rules/model.h"

namespace mlds::rules {

/// Is told what every rule does. Between BeforeRule and AfterRule the container's test observer may
/// be used to see more; nothing may be changed. Marks are of the block's first tier.
class RuleObserver {
public:
    virtual ~RuleObserver() = default;

    virtual void BeforeBlock(const Block&) {}
    /// A rule is tried at a mark, and has been: it held up to `pEnd`, or did not (null).
    virtual void BeforeRule(const Rule&, CSyncMark* /*pAt*/) {}
    virtual void AfterRule(const Rule&, CSyncMark* /*pAt*/, CSyncMark* /*pEnd*/) {}
    /// What the rule said has been done between the two marks.
    virtual void Applied(const Rule&, CSyncMark* /*pAt*/, CSyncMark* /*pEnd*/) {}
    /// No rule of a block that takes the first one held at a mark.
    virtual void NoRule(const Block&, CSyncMark* /*pAt*/) {}
    /// The place had something in the other tier already, so no rule was tried.
    virtual void Taken(const Block&, CSyncMark* /*pAt*/) {}
};

}  // namespace mlds::rules

#endif
