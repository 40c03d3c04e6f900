// The names that one rule binds.
#ifndef MLDS_RULES_VARIABLES_H
#define MLDS_RULES_VARIABLES_H

#include <vector>

#include "model/scope.h"

namespace mlds::rules {

/// The captures ("x:" and "$x") and marks ("^m" and "@m") of one rule, with the tier each belongs
/// to.
class Variables {
public:
    explicit Variables(Scope& scope) : m_scope(scope) {}

    /// A name that is bound here; the same name may be bound in several branches, in one tier.
    int Bind(const syntax::Word& name, bool bToken, TierId tier);
    /// A name that will be bound, and may be used before until EndAnnouncements.
    void Announce(const syntax::Word& name, bool bToken, TierId tier);
    void EndAnnouncements() { m_bAnnounced = false; }
    /// A name that is used. Reported and -1 if nothing binds it, or in another tier.
    int Use(const syntax::Word& name, bool bToken, TierId tier);

    const std::vector<Variable>& all() const { return m_variables; }
    int size() const { return static_cast<int>(m_variables.size()); }

private:
    int Find(const std::string& name, bool bToken) const;

    Scope& m_scope;
    std::vector<Variable> m_variables;
    std::vector<bool> m_bound;  // by variable: false as long as it is only announced
    bool m_bAnnounced = false;
};

}  // namespace mlds::rules

#endif
