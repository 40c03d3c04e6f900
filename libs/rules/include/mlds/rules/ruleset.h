// A rule file, read and compiled.
#ifndef MLDS_RULES_RULESET_H
#define MLDS_RULES_RULESET_H

#include <memory>
#include <string>
#include <string_view>

#include "mlds/rules/diagnostics.h"
#include "mlds/rules/model.h"

class CPlexa;

namespace mlds {

namespace rules {
struct CompiledRules;
}

/// What a language's rule file says, with the files it includes and its lexicons. Never changes, so
/// hosts in several threads may share one.
class RuleSet {
public:
    /// Reads and compiles a file. Null if it has errors; warnings alone do not stop it.
    static std::shared_ptr<const RuleSet> Read(const std::string& path,
                                               rules::Diagnostics& diagnostics);
    /// The same of a text. `name` stands in messages, and what the text includes is looked for
    /// beside it.
    static std::shared_ptr<const RuleSet> ReadText(std::string text, const std::string& name,
                                                   rules::Diagnostics& diagnostics);

    RuleSet(const RuleSet&) = delete;
    RuleSet& operator=(const RuleSet&) = delete;
    ~RuleSet();

    const rules::Model& model() const;
    const rules::Sources& sources() const;
    /// Declares the tiers in a container of the caller's, which has no streams yet and is not
    /// initialized: streams of its own may follow. False when memory runs out or a limit of the
    /// container is passed.
    bool DeclareTiers(CPlexa& plexa) const;
    /// The instructions of a rule's tests, as mlds-testasm lists them.
    std::string Listing(int block, int rule) const;
    /// What only hosts look into.
    const rules::CompiledRules& compiled() const { return *m_pCompiled; }

private:
    explicit RuleSet(std::unique_ptr<rules::CompiledRules> pCompiled);

    std::unique_ptr<rules::CompiledRules> m_pCompiled;
};

}  // namespace mlds

#endif
