// The names of a rule file, and the way from a word of the author to what it means.
#ifndef MLDS_RULES_SCOPE_H
#define MLDS_RULES_SCOPE_H

#include <map>
#include <string>
#include <vector>

#include "mlds/rules/diagnostics.h"
#include "mlds/rules/model.h"
#include "syntax/syntax.h"

namespace mlds::rules {

/// A named pattern, or a class: a pattern for one token. Resolved anew in the tier of every use.
struct Definition {
    const syntax::Pattern* pPattern = nullptr;
    bool bClass = false;
    Span span;
    bool bUsed = false;
};

/// What resolving shares: the model as far as it is known, the definitions, and where to complain.
class Scope {
public:
    Scope(const Sources& sources, Diagnostics& diagnostics, Model& model)
        : m_sources(sources), m_diagnostics(diagnostics), m_model(model) {}

    void Error(const Span& span, std::string message) {
        m_diagnostics.Error(m_sources, span, std::move(message));
    }
    void Warning(const Span& span, std::string message) {
        m_diagnostics.Warning(m_sources, span, std::move(message));
    }

    /// True if anything is wrong already, so that what is missing may only have been left out.
    bool bFaulty() const { return m_diagnostics.errors() > 0; }

    Model& model() { return m_model; }
    const Sources& sources() const { return m_sources; }
    Tier& tier(TierId id) { return m_model.tiers[static_cast<std::size_t>(id)]; }

    /// The tier of that name. Reports an unknown one, and gives kNoTier.
    TierId TierCalled(const syntax::Word& word);
    /// A token of a tier by its name; reported and -1 if there is none. In a time tier the number.
    int TokenCalled(TierId tier, const syntax::Word& word);
    /// The tokens that a word stands for: cut, longest first, in the tier from text; itself, quoted
    /// or elsewhere. Reported and empty if that fails.
    std::vector<int> Cut(TierId tier, const syntax::Word& word);
    /// The nearest names to a misspelt word among a tier's tokens.
    std::string NearestToken(TierId tier, const std::string& word);

    std::map<std::string, Definition> definitions;

private:
    const Sources& m_sources;
    Diagnostics& m_diagnostics;
    Model& m_model;
};

/// `'tS'`, as messages quote what the author wrote.
std::string Quoted(const std::string& text);

/// "line 14", or "line 14 of FILE" where it is another file than that of `from`.
std::string LineOf(const Sources& sources, const Span& span, const Span& from);

}  // namespace mlds::rules

#endif
