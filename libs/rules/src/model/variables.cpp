// Captures and marks of a rule.
#include "model/variables.h"

namespace mlds::rules {

int Variables::Find(const std::string& name, bool bToken) const {
    for (std::size_t i = 0; i < m_variables.size(); ++i) {
        if (m_variables[i].name == name && m_variables[i].bToken == bToken) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

int Variables::Bind(const syntax::Word& name, bool bToken, TierId tier) {
    const int found = Find(name.text, bToken);
    if (found < 0) {
        m_variables.push_back({name.text, bToken, name.span, tier});
        m_bound.push_back(true);
        return size() - 1;
    }
    m_bound[static_cast<std::size_t>(found)] = true;
    // A copy keeps its tier, so one name cannot stand for tokens of two.
    if (bToken && m_variables[static_cast<std::size_t>(found)].tier != tier) {
        m_scope.Error(name.span, Quoted(name.text) +
                                     " is bound to a token of another tier already; take "
                                     "another name");
    }
    return found;
}

void Variables::Announce(const syntax::Word& name, bool bToken, TierId tier) {
    m_bAnnounced = true;
    if (Find(name.text, bToken) >= 0) return;
    m_variables.push_back({name.text, bToken, name.span, tier});
    m_bound.push_back(false);
}

int Variables::Use(const syntax::Word& name, bool bToken, TierId tier) {
    const int found = Find(name.text, bToken);
    if (found >= 0 && !m_bound[static_cast<std::size_t>(found)] && !m_bAnnounced) {
        m_scope.Error(name.span, Quoted(name.text) +
                                     " is not bound yet here: left of '_' tokens are matched from "
                                     "right to left, so what is captured stands right of its use");
        return -1;
    }
    if (found < 0) {
        std::vector<std::string> names;
        for (const Variable& variable : m_variables) {
            if (variable.bToken == bToken) names.push_back(variable.name);
        }
        m_scope.Error(name.span,
                      std::string("nothing before this ") +
                          (bToken ? "captures a token as " : "sets a mark ") + Quoted(name.text) +
                          DidYouMean(name.text, names) +
                          (bToken && names.empty() ? "; write x:[...] to capture one" : ""));
        return -1;
    }
    if (bToken && m_variables[static_cast<std::size_t>(found)].tier != tier) {
        const Tier& bound = m_scope.tier(m_variables[static_cast<std::size_t>(found)].tier);
        m_scope.Error(name.span, Quoted(name.text) + " is a token of tier " + bound.name +
                                     ", and one of tier " + m_scope.tier(tier).name +
                                     " is needed here");
        return -1;
    }
    return found;
}

}  // namespace mlds::rules
