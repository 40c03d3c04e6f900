// How tokens are shown, lexicons and asserts.
#include <algorithm>

#include "model/conditions.h"
#include "model/resolve.h"

namespace mlds::rules {

namespace {

class RestResolver {
public:
    explicit RestResolver(Scope& scope) : m_scope(scope), m_model(scope.model()) {}

    void Add(const syntax::ShowMark& written) {
        const TierId tier = m_scope.TierCalled(written.tier);
        if (tier == kNoTier) return;
        Variables none(m_scope);
        ShowMark mark{tier, written.mark.text, written.bBefore, written.bIpa,
                      {},   written.tier.span};
        mark.condition = ResolveCondition(m_scope, none, tier, written.condition);
        m_model.showMarks.push_back(std::move(mark));
        if (m_model.shown == kNoTier && !written.bIpa) m_model.shown = tier;
    }

    void Add(const syntax::ShowBy& written) {
        const TierId tier = m_scope.TierCalled(written.tier);
        const TierId by = m_scope.TierCalled(written.by);
        if (tier == kNoTier || by == kNoTier) return;
        if (tier == by) m_scope.Error(written.by.span, "a tier cannot be shown by itself");
        m_model.showBy.push_back({tier, by});
    }

    void Add(const syntax::Ipa& written) {
        const TierId tier = m_scope.TierCalled(written.tier);
        if (tier == kNoTier) return;
        const auto isOf = [tier](const IpaText& text) { return text.tier == tier; };
        auto it = std::find_if(m_model.ipa.begin(), m_model.ipa.end(), isOf);
        if (it == m_model.ipa.end()) {
            m_model.ipa.push_back({tier, m_scope.tier(tier).tokens});
            it = m_model.ipa.end() - 1;
        }
        for (const syntax::Ipa::Entry& entry : written.entries) {
            const int token = m_scope.TokenCalled(tier, entry.token);
            if (token < 0 || static_cast<std::size_t>(token) >= it->texts.size()) continue;
            it->texts[static_cast<std::size_t>(token)] = entry.text.text;
        }
    }

    void Add(const syntax::Lexicon& written) {
        LexiconFile lexicon{written.file.text, m_scope.TierCalled(written.from),
                            m_scope.TierCalled(written.to), written.file.span};
        if (lexicon.from == kNoTier || lexicon.to == kNoTier) return;
        const Tier& from = m_scope.tier(lexicon.from);
        if (from.kind != Tier::Kind::spans || from.spanned != m_model.text.tier) {
            m_scope.Error(written.from.span,
                          "a lexicon goes from a tier that spans the tier from text, whose letters "
                          "its words are written with");
            return;
        }
        m_model.lexicons.push_back(std::move(lexicon));
    }

    void Add(const syntax::Assert& written) {
        Assert a;
        a.input = written.input.text;
        a.expected = written.expected;
        a.span = written.span;
        a.inputSpan = written.input.span;
        if (written.tier) {
            a.tier = m_scope.TierCalled(written.tier);
            if (a.tier == kNoTier) return;
        }
        m_model.asserts.push_back(std::move(a));
    }

    template <typename Other>
    void Add(const Other&) {}

    // Without a word of the author the last tier that holds signs is what people want to see.
    void ChooseShown() {
        for (std::size_t i = m_model.tiers.size(); i-- > 0 && m_model.shown == kNoTier;) {
            if (m_model.tiers[i].kind == Tier::Kind::plain) m_model.shown = static_cast<TierId>(i);
        }
        if (m_model.shown == kNoTier && m_model.tiers.size() > 1) m_model.shown = 1;
        for (Assert& a : m_model.asserts) {
            if (a.tier == kNoTier) a.tier = m_model.shown;
        }
    }

private:
    Scope& m_scope;
    Model& m_model;
};

}  // namespace

void ResolveRest(Scope& scope, const std::vector<syntax::Statement>& statements) {
    RestResolver resolver(scope);
    for (const syntax::Statement& statement : statements) {
        std::visit([&resolver](const auto& written) { resolver.Add(written); }, statement);
        const auto* pRead = std::get_if<syntax::Read>(&statement);
        if (pRead == nullptr) continue;
        scope.model().text.reads.push_back({pRead->from.text, pRead->to.text, pRead->from.span});
    }
    resolver.ChooseShown();
}

}  // namespace mlds::rules
