// Conditions in brackets, and the fields that settings give.
#include "model/conditions.h"

#include <algorithm>
#include <charconv>

namespace mlds::rules {

namespace {

// A value of a field as its tier has it; reported and 0 if there is none.
int ValueOf(Scope& scope, TierId tierId, int field, const syntax::Word& word) {
    const Field& f = scope.tier(tierId).fields[static_cast<std::size_t>(field)];
    if (f.kind == Field::Kind::name) return scope.TokenCalled(tierId, word);
    if (f.kind == Field::Kind::number) {
        int number = 0;
        const char* pEnd = word.text.data() + word.text.size();
        const auto [p, fault] = std::from_chars(word.text.data(), pEnd, number);
        if (fault == std::errc() && p == pEnd) return number;
        scope.Error(word.span, Quoted(f.name) + " is a number, found " + Quoted(word.text));
        return 0;
    }
    const auto it = std::find(f.values.begin(), f.values.end(), word.text);
    if (it != f.values.end()) return static_cast<int>(it - f.values.begin());
    scope.Error(word.span, Quoted(f.name) + " has no value " + Quoted(word.text) +
                               DidYouMean(word.text, f.values));
    return 0;
}

// Conditions nest by parentheses; the reader has limited how deep.
class ConditionResolver {
public:
    ConditionResolver(Scope& scope, Variables& variables, TierId tier)
        : m_scope(scope), m_variables(variables), m_tierId(tier), m_tier(scope.tier(tier)) {}

    Condition Resolve(const syntax::Condition& written) {
        using Kind = syntax::Condition::Kind;
        switch (written.kind) {
            case Kind::name: return Named(written.left);
            case Kind::compare: return Compared(written);
            case Kind::all:
            case Kind::any:
            case Kind::isNot: break;
        }
        Condition condition;
        condition.kind = written.kind == Kind::all   ? Condition::Kind::all
                         : written.kind == Kind::any ? Condition::Kind::any
                                                     : Condition::Kind::isNot;
        condition.span = written.span;
        for (const syntax::Condition& part : written.parts) {
            condition.parts.push_back(Resolve(part));
        }
        return condition;
    }

private:
    Condition Equal(int field, int value, const Span& span) const {
        Condition condition;
        condition.kind = Condition::Kind::compare;
        condition.field = field;
        condition.value = value;
        condition.span = span;
        return condition;
    }

    // A word in brackets is a feature, a value of one, or a token, looked for in this order. No
    // two of them have the same name, but for values of several features.
    Condition Named(const syntax::Word& word) {
        if (word.bQuoted) return Equal(kNameField, m_scope.TokenCalled(m_tierId, word), word.span);
        const int field = m_tier.FindField(word.text);
        if (field > kNameField) return WholeField(field, word);
        std::vector<int> owners;
        int value = -1;
        for (std::size_t f = 1; f < m_tier.fields.size(); ++f) {
            const Field& candidate = m_tier.fields[f];
            if (candidate.bYesNo) continue;
            const auto it = std::find(candidate.values.begin(), candidate.values.end(), word.text);
            if (it == candidate.values.end()) continue;
            owners.push_back(static_cast<int>(f));
            value = static_cast<int>(it - candidate.values.begin());
        }
        if (owners.size() > 1) {
            const std::string& first = m_tier.fields[static_cast<std::size_t>(owners[0])].name;
            m_scope.Error(word.span, Quoted(word.text) + " is a value of several features; write " +
                                         first + '=' + word.text);
            return {};
        }
        if (owners.size() == 1) return Equal(owners[0], value, word.span);
        const int token = m_tier.FindToken(word.text);
        if (token >= 0) return Equal(kNameField, token, word.span);
        ReportUnknown(word);
        return {};
    }

    Condition WholeField(int field, const syntax::Word& word) {
        const Field& f = m_tier.fields[static_cast<std::size_t>(field)];
        if (f.kind == Field::Kind::number) {
            m_scope.Error(word.span, Quoted(word.text) + " is a number; ask for its value: [" +
                                         f.name + "=1], [" + f.name + "!=0]");
        } else if (!f.bYesNo) {
            m_scope.Error(word.span, Quoted(word.text) + " has several values; ask for one: [" +
                                         f.name + '=' + f.values.front() + "] or [" +
                                         f.values.front() + ']');
        }
        return Equal(field, 0, word.span);
    }

    void ReportUnknown(const syntax::Word& word) {
        std::vector<std::string> names = m_tier.tokens;
        for (const Field& field : m_tier.fields) {
            if (field.kind != Field::Kind::name) names.push_back(field.name);
            if (!field.bYesNo) names.insert(names.end(), field.values.begin(), field.values.end());
        }
        const std::string near = DidYouMean(word.text, names);
        m_scope.Error(word.span, "no feature, value or token " + Quoted(word.text) + " in tier " +
                                     m_tier.name + (near.empty() ? Elsewhere(word.text) : near));
    }

    // Features of phones in rules that look at letters, as who thinks of both writes them.
    std::string Elsewhere(const std::string& name) const {
        for (const Tier& tier : m_scope.model().tiers) {
            const bool bHas = std::ranges::any_of(tier.fields, [&name](const Field& f) {
                return f.kind != Field::Kind::name &&
                       (f.name == name ||
                        (!f.bYesNo && std::ranges::find(f.values, name) != f.values.end()));
            });
            if (bHas)
                return "; tier " + tier.name + " has it, but this asks for a token of tier " +
                       m_tier.name;
        }
        return {};
    }

    Condition Compared(const syntax::Condition& written) {
        const int field = FieldToCompare(written.left);
        if (field < 0) return {};
        const Field& f = m_tier.fields[static_cast<std::size_t>(field)];
        Condition condition = Equal(field, 0, written.span);
        condition.comparison = written.comparison;
        const bool bOrdered =
            written.comparison != Comparison::equal && written.comparison != Comparison::notEqual;
        if (bOrdered && f.kind != Field::Kind::number) {
            m_scope.Error(written.span, "only numbers are more or less than others, and " +
                                            Quoted(f.name) + " is none");
            return {};
        }
        if (written.bCapture) return SameAs(written, condition);
        condition.value = ValueOf(m_scope, m_tierId, field, written.right);
        return condition;
    }

    Condition SameAs(const syntax::Condition& written, Condition condition) {
        condition.kind = Condition::Kind::sameAs;
        condition.variable = m_variables.Use(written.right, true, m_tierId);
        if (written.comparison == Comparison::equal) return condition;
        if (written.comparison != Comparison::notEqual) {
            m_scope.Error(written.span, "with a captured token only = and != can be asked");
        }
        condition.comparison = Comparison::equal;
        Condition isNot;
        isNot.kind = Condition::Kind::isNot;
        isNot.span = written.span;
        isNot.parts.push_back(std::move(condition));
        return isNot;
    }

    int FieldToCompare(const syntax::Word& word) {
        const int field = word.text == "name" ? kNameField : m_tier.FindField(word.text);
        if (field >= 0) return field;
        std::vector<std::string> names;
        for (const Field& f : m_tier.fields) names.push_back(f.name);
        m_scope.Error(word.span, "tier " + m_tier.name + " has no feature or field " +
                                     Quoted(word.text) + DidYouMean(word.text, names));
        return -1;
    }

    Scope& m_scope;
    Variables& m_variables;
    TierId m_tierId;
    const Tier& m_tier;
};

Possible Opposite(Possible possible) {
    return possible == Possible::no    ? Possible::yes
           : possible == Possible::yes ? Possible::no
                                       : Possible::maybe;
}

Possible CompareByName(const Tier& tier, const Condition& condition, int token) {
    const Field& field = tier.fields[static_cast<std::size_t>(condition.field)];
    if (field.kind == Field::Kind::number || field.bSetByRules) return Possible::maybe;
    const int value = field.kind == Field::Kind::name
                          ? token
                          : field.valueOfToken[static_cast<std::size_t>(token)];
    const bool bEqual = value == condition.value;
    return bEqual == (condition.comparison == Comparison::equal) ? Possible::yes : Possible::no;
}

}  // namespace

Condition ResolveCondition(Scope& scope, Variables& variables, TierId tier,
                           const syntax::Condition& written) {
    return ConditionResolver(scope, variables, tier).Resolve(written);
}

Condition IsToken(int token, const Span& span) {
    Condition condition;
    condition.kind = Condition::Kind::compare;
    condition.field = kNameField;
    condition.value = token;
    condition.span = span;
    return condition;
}

std::vector<Setting> ResolveSettings(Scope& scope, TierId tierId,
                                     const std::vector<syntax::Setting>& written) {
    std::vector<Setting> settings;
    Tier& tier = scope.tier(tierId);
    for (const syntax::Setting& setting : written) {
        const int field = tier.FindField(setting.name.text);
        if (field <= kNameField) {
            std::vector<std::string> names;
            for (std::size_t f = 1; f < tier.fields.size(); ++f) {
                names.push_back(tier.fields[f].name);
            }
            scope.Error(setting.name.span, "tier " + tier.name + " has no feature or field " +
                                               Quoted(setting.name.text) +
                                               DidYouMean(setting.name.text, names));
            continue;
        }
        const Field& f = tier.fields[static_cast<std::size_t>(field)];
        Setting resolved{field, 0, setting.span};
        if (setting.kind == syntax::Setting::Kind::value) {
            resolved.value = ValueOf(scope, tierId, field, setting.value);
        } else if (!f.bYesNo) {
            scope.Error(setting.span, Quoted(f.name) + " is not yes or no; write " + f.name + "=" +
                                          (f.values.empty() ? "1" : f.values.front()));
        } else {
            resolved.value = setting.kind == syntax::Setting::Kind::yes ? 0 : 1;
        }
        settings.push_back(resolved);
    }
    return settings;
}

Possible CanMeet(const Tier& tier, const Condition& condition, int token) {
    switch (condition.kind) {
        case Condition::Kind::all: {
            Possible result = Possible::yes;
            for (const Condition& part : condition.parts) {
                result = std::min(result, CanMeet(tier, part, token));
            }
            return result;
        }
        case Condition::Kind::any: {
            Possible result = Possible::no;
            for (const Condition& part : condition.parts) {
                result = std::max(result, CanMeet(tier, part, token));
            }
            return result;
        }
        case Condition::Kind::isNot: return Opposite(CanMeet(tier, condition.parts.front(), token));
        case Condition::Kind::compare: return CompareByName(tier, condition, token);
        case Condition::Kind::sameAs: return Possible::maybe;
    }
    return Possible::maybe;
}

}  // namespace mlds::rules
