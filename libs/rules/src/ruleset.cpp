// Reading, checking and compiling a rule file.
#include "mlds/rules/ruleset.h"

#include "compiled.h"
#include "host/labels.h"
#include "host/tiers.h"
#include "load.h"
#include "mlds/testasm/text.h"
#include "model/resolve.h"
#include "text/shown.h"
#include "text/textreader.h"

namespace mlds {

using namespace rules;

namespace {

void LoadLexicons(CompiledRules& rules, Diagnostics& diagnostics) {
    for (const LexiconFile& lexicon : rules.model.lexicons) {
        const std::string path = Beside(rules.sources.At(lexicon.span.file).name(), lexicon.file);
        std::string reason;
        std::optional<std::string> text = ReadWholeFile(path, &reason);
        if (!text) {
            diagnostics.Error(rules.sources, lexicon.span, "cannot read " + path + ": " + reason);
            continue;
        }
        const int source = rules.sources.Add(path, std::move(*text));
        rules.lexicons.emplace_back(rules.model, lexicon, rules.sources, source, diagnostics);
    }
}

// What an assert expects has to be made of tokens, or it can never be met.
void CheckAsserts(const CompiledRules& rules, Diagnostics& diagnostics) {
    for (const Assert& a : rules.model.asserts) {
        if (ShownBy(rules.model, a.tier) != kNoTier) continue;  // made of whole labels
        const ShownText shown = ReadShown(rules.model, a.tier, a.expected);
        if (shown.fault.empty()) continue;
        Span span = a.span;
        span.column += shown.column - 1;
        span.length = shown.length;
        diagnostics.Error(rules.sources, span, shown.fault);
    }
}

// Which rules are worth trying where a token stands. What comes out does not depend on it.
void PrepareChoosing(CompiledRules& rules) {
    rules.candidates = CandidatesOf(rules.model);
    for (const Block& block : rules.model.blocks) {
        const Tier& from = rules.model.tiers[static_cast<std::size_t>(block.from)];
        auto& shortcuts = rules.shortcuts.emplace_back();
        for (const Rule& rule : block.rules) shortcuts.push_back(ShortcutsOf(from, rule));
    }
}

std::unique_ptr<CompiledRules> Compile(std::string text, const std::string& name,
                                       Diagnostics& diagnostics) {
    auto rules = std::make_unique<CompiledRules>();
    const int file = rules->sources.Add(name, std::move(text));
    const std::vector<syntax::Statement> statements =
        LoadStatements(rules->sources, file, diagnostics);
    rules->model = Resolve(statements, rules->sources, diagnostics);
    if (diagnostics.errors() == 0) CheckText(rules->model, rules->sources, diagnostics);
    if (diagnostics.errors() == 0) CheckAsserts(*rules, diagnostics);
    if (diagnostics.errors() == 0) LoadLexicons(*rules, diagnostics);
    if (diagnostics.errors() == 0) {
        rules->lowered = Lower(rules->model, rules->sources, diagnostics);
    }
    if (diagnostics.errors() > 0) return nullptr;
    PrepareChoosing(*rules);
    return rules;
}

}  // namespace

RuleSet::RuleSet(std::unique_ptr<CompiledRules> pCompiled) : m_pCompiled(std::move(pCompiled)) {}

RuleSet::~RuleSet() = default;

std::shared_ptr<const RuleSet> RuleSet::ReadText(std::string text, const std::string& name,
                                                 Diagnostics& diagnostics) {
    std::unique_ptr<CompiledRules> pCompiled = Compile(std::move(text), name, diagnostics);
    if (pCompiled == nullptr) return nullptr;
    return std::shared_ptr<const RuleSet>(new RuleSet(std::move(pCompiled)));
}

std::shared_ptr<const RuleSet> RuleSet::Read(const std::string& path, Diagnostics& diagnostics) {
    std::string reason;
    std::optional<std::string> text = ReadWholeFile(path, &reason);
    if (!text) {
        diagnostics.Add({path, {}, Severity::error, "cannot be read: " + reason, ""});
        return nullptr;
    }
    return ReadText(std::move(*text), path, diagnostics);
}

const Model& RuleSet::model() const {
    return m_pCompiled->model;
}

const Sources& RuleSet::sources() const {
    return m_pCompiled->sources;
}

bool RuleSet::DeclareTiers(CPlexa& plexa) const {
    return AddTiers(plexa, m_pCompiled->model);
}

std::string RuleSet::Listing(int block, int rule) const {
    const CompiledRules& rules = *m_pCompiled;
    const Rule& written = rules.model.blocks.at(static_cast<std::size_t>(block))
                              .rules.at(static_cast<std::size_t>(rule));
    const LoweredRule& lowered =
        rules.lowered.rules[static_cast<std::size_t>(block)][static_cast<std::size_t>(rule)];
    const mlds_testasm::Schema schema = SchemaOf(rules.model, written.variables);
    std::string text;
    for (const std::vector<int>* pTests : {&lowered.where, &lowered.except}) {
        for (const int test : *pTests) {
            const mlds_testasm::Test& code =
                rules.lowered.program.tests[static_cast<std::size_t>(test)];
            text += mlds_testasm::TestWriter(code, schema).Text();
        }
    }
    return text;
}

}  // namespace mlds
