// The order in which a rule file is made sense of.
#include "model/resolve.h"

#include <set>

#include "model/patterns.h"

namespace mlds::rules {

namespace {

void Define(Scope& scope, const syntax::Word& name, const syntax::Pattern& pattern, bool bClass) {
    const auto [it, bNew] = scope.definitions.try_emplace(name.text);
    if (!bNew) {
        scope.Error(name.span, Quoted(name.text) + " is defined already, in " +
                                   LineOf(scope.sources(), it->second.span, name.span));
        return;
    }
    it->second = {&pattern, bClass, name.span, false};
    for (const Tier& tier : scope.model().tiers) {
        if (tier.FindToken(name.text) < 0) continue;
        scope.Error(name.span, Quoted(name.text) + " is a token of tier " + tier.name +
                                   "; a class or pattern needs a name of its own");
        break;
    }
}

void DefinePatterns(Scope& scope, const std::vector<syntax::Statement>& statements) {
    for (const syntax::Statement& statement : statements) {
        if (const auto* pClass = std::get_if<syntax::ClassDefinition>(&statement)) {
            Define(scope, pClass->name, pClass->pattern, true);
        } else if (const auto* pPattern = std::get_if<syntax::PatternDefinition>(&statement)) {
            Define(scope, pPattern->name, pPattern->pattern, false);
        }
    }
}

void ResolveLanguage(Scope& scope, const std::vector<syntax::Statement>& statements) {
    for (const syntax::Statement& statement : statements) {
        const auto* pLanguage = std::get_if<syntax::Language>(&statement);
        if (pLanguage == nullptr) continue;
        if (!scope.model().language.empty()) {
            scope.Error(pLanguage->name.span,
                        "the language has been said already: " + Quoted(scope.model().language));
        }
        scope.model().language = pLanguage->name.text;
    }
}

}  // namespace

Model Resolve(const std::vector<syntax::Statement>& statements, const Sources& sources,
              Diagnostics& diagnostics) {
    Model model;
    Scope scope(sources, diagnostics, model);
    ResolveLanguage(scope, statements);
    ResolveTiers(scope, statements);
    DefinePatterns(scope, statements);
    ResolveSpans(scope, statements);
    std::set<std::string> names;
    for (const syntax::Statement& statement : statements) {
        const auto* pBlock = std::get_if<syntax::Block>(&statement);
        if (pBlock == nullptr) continue;
        if (!names.insert(pBlock->name.text).second) {
            scope.Error(pBlock->name.span,
                        "there is a block " + Quoted(pBlock->name.text) + " already");
        }
        ResolveBlock(scope, *pBlock);
    }
    ResolveRest(scope, statements);
    // Only now it is known which features rules change, so that a name does not tell them.
    for (Block& block : model.blocks) {
        for (Rule& rule : block.rules) {
            rule.firstTokens = FirstTokens(scope.tier(block.from), rule.focus);
        }
    }
    CheckRules(scope);
    for (const auto& [name, definition] : scope.definitions) {
        if (definition.bUsed) continue;
        scope.Warning(definition.span, Quoted(name) + " is used nowhere, and has not been checked");
    }
    return model;
}

}  // namespace mlds::rules
