// Syntax trees as one readable line.
#include "syntax_print.h"

#include <array>

namespace mlds::rules::syntax {

namespace {

std::string Of(const Word& word) {
    return word.bQuoted ? '"' + word.text + '"' : word.text;
}

std::string Of(const std::vector<Word>& words) {
    std::string text;
    for (const Word& word : words) text += ' ' + Of(word);
    return text;
}

std::string Of(const Condition& condition) {
    constexpr std::array kComparisons = {"=", "!=", "<", "<=", ">", ">="};
    const auto Parts = [&](const std::string& name) {
        std::string text = '(' + name;
        for (const Condition& part : condition.parts) text += ' ' + Of(part);
        return text + ')';
    };
    switch (condition.kind) {
        case Condition::Kind::all: return Parts("and");
        case Condition::Kind::any: return Parts("or");
        case Condition::Kind::isNot: return Parts("not");
        case Condition::Kind::name: return Of(condition.left);
        case Condition::Kind::compare: break;
    }
    return Of(condition.left) + kComparisons.at(static_cast<std::size_t>(condition.comparison)) +
           (condition.bCapture ? "$" : "") + Of(condition.right);
}

std::string Of(const Pattern& pattern);

std::string Of(const Repetition& repetition) {
    if (repetition.span.line == 0) return {};
    const std::string most = repetition.most < 0 ? "" : std::to_string(repetition.most);
    return '{' + std::to_string(repetition.least) + ',' + most + '}' +
           (repetition.bShortest ? "?" : "");
}

std::string AtomOf(const Item& item) {
    switch (item.kind) {
        case Item::Kind::word: return Of(item.word);
        case Item::Kind::condition: return '[' + Of(item.condition) + ']';
        case Item::Kind::any: return ".";
        case Item::Kind::sameAs: return '=' + Of(item.word);
        case Item::Kind::group: return '(' + Of(item.pattern) + ')';
        case Item::Kind::cross: return '<' + Of(item.word) + ": " + Of(item.pattern) + '>';
        case Item::Kind::in: return "in(" + Of(item.word) + ": " + Of(item.condition) + ')';
        case Item::Kind::lookAhead: return '&' + Of(item.pattern);
        case Item::Kind::lookNot: return '!' + Of(item.pattern);
        case Item::Kind::setMark: return '^' + Of(item.word);
        case Item::Kind::atMark: return '@' + Of(item.word);
        case Item::Kind::edge: return '#' + Of(item.word);
        case Item::Kind::utteranceEdge: return "##";
    }
    return "?";
}

std::string Of(const Sequence& sequence) {
    std::string text;
    for (const Item& item : sequence.items) {
        text += text.empty() ? "" : " ";
        if (item.capture) text += Of(item.capture) + ':';
        text += AtomOf(item) + Of(item.repetition);
    }
    return text;
}

std::string Of(const Pattern& pattern) {
    std::string text;
    for (const Sequence& sequence : pattern.alternatives) {
        text += (&sequence == pattern.alternatives.data() ? "" : " | ") + Of(sequence);
    }
    return text;
}

std::string Of(const std::vector<Setting>& settings) {
    std::string text;
    for (const Setting& setting : settings) {
        const bool bValue = setting.kind == Setting::Kind::value;
        text += text.empty() ? "[" : " ";
        if (!bValue) text += setting.kind == Setting::Kind::yes ? '+' : '-';
        text += Of(setting.name) + (bValue ? '=' + Of(setting.value) : "");
    }
    return text.empty() ? text : text + ']';
}

std::string Of(const std::vector<Environment>& environments, const std::string& sign) {
    std::string text;
    for (const Environment& environment : environments) {
        text += (text.empty() ? ' ' + sign + ' ' : " | ") + Of(environment.left) + '_' +
                Of(environment.right);
    }
    return text;
}

std::string Of(const Rule& rule) {
    std::string text = "(rule ";
    if (rule.name) text += Of(rule.name) + ": ";
    text += rule.bInsertion ? "0" : Of(rule.focus);
    if (rule.action == Action::scale) text += " ~ " + std::to_string(rule.percent);
    if (rule.action == Action::set) text += " := " + Of(rule.settings);
    if (rule.action == Action::replace) text += " ->";
    for (const ResultItem& item : rule.result) {
        constexpr std::array kSigns = {"", "$", "^"};
        text += ' ' + std::string(kSigns.at(static_cast<std::size_t>(item.kind))) + Of(item.word) +
                Of(item.settings);
    }
    return text + Of(rule.where, "/") + Of(rule.except, "\\") + ')';
}

struct Printer {
    std::string operator()(const Feature& feature) const {
        std::string text = "(feature " + Of(feature.name);
        for (const auto& value : feature.values) {
            text += (feature.bYesNo ? "" : " | " + Of(value.name)) + " =" + Of(value.tokens);
        }
        return text + ')';
    }
    std::string operator()(const NumberField& field) const {
        return "(field " + Of(field.name) + ')';
    }
    std::string operator()(const SpanPattern& span) const {
        return "(span " + Of(span.name) + " = " + Of(span.pattern) + ')';
    }
    std::string operator()(const SpanWords& words) const {
        return "(words " + Of(words.name) + " :" + Of(words.words) + ')';
    }
    std::string operator()(const StandsFor& s) const {
        return "(letters" + Of(s.from) + " =" + Of(s.to) + ')';
    }
    std::string operator()(const Ignore& ignore) const {
        return "(ignore" + Of(ignore.characters) + (ignore.bOther ? " OTHER)" : ")");
    }
    std::string operator()(const JoinLetters& join) const {
        return "(join" + Of(join.characters) + ')';
    }
    std::string operator()(const Expansion& expansion) const {
        return "(expand " + Of(expansion.pattern) + " as " +
               (expansion.bSpellout ? "SPELLOUT" : Of(expansion.reading)) + ')';
    }
    std::string operator()(const CaseKept&) const { return "(case)"; }

    std::string operator()(const Language& l) const { return "(language " + Of(l.name) + ')'; }
    std::string operator()(const Read& r) const {
        return "(read " + Of(r.from) + " as " + Of(r.to) + ')';
    }
    std::string operator()(const Tier& tier) const {
        std::string text = "(tier " + Of(tier.name);
        if (tier.bFromText) text += " TEXT";
        if (tier.bTime) text += " MS";
        if (tier.spans) text += " SPANS " + Of(tier.spans);
        text += " :" + Of(tier.tokens);
        for (const TierPart& part : tier.parts) text += ' ' + std::visit(*this, part);
        return text + ')';
    }
    std::string operator()(const Lexicon& l) const {
        return "(lexicon " + Of(l.file) + ' ' + Of(l.from) + ' ' + Of(l.to) + ')';
    }
    std::string operator()(const ClassDefinition& c) const {
        return "(class " + Of(c.name) + " = " + Of(c.pattern) + ')';
    }
    std::string operator()(const PatternDefinition& p) const {
        return "(pattern " + Of(p.name) + " = " + Of(p.pattern) + ')';
    }
    std::string operator()(const ShowMark& show) const {
        return "(show " + Of(show.tier) + (show.bBefore ? " before " : " after ") + Of(show.mark) +
               " [" + Of(show.condition) + (show.bIpa ? "] IPA)" : "])");
    }
    std::string operator()(const ShowBy& s) const {
        return "(show " + Of(s.tier) + " BY " + Of(s.by) + ')';
    }
    std::string operator()(const Ipa& ipa) const {
        std::string text = "(ipa " + Of(ipa.tier);
        for (const auto& entry : ipa.entries) text += ' ' + Of(entry.token) + '=' + Of(entry.text);
        return text + ')';
    }
    std::string operator()(const Block& block) const {
        std::string text = "(block " + Of(block.name) + ' ' + Of(block.from);
        if (block.to) text += "->" + Of(block.to);
        if (block.within) text += " within " + Of(block.within);
        if (block.first.has_value()) text += *block.first ? " first" : " each";
        if (block.bLeftward) text += " leftward";
        for (const Rule& rule : block.rules) text += ' ' + Of(rule);
        return text + ')';
    }
    std::string operator()(const Assert& a) const {
        return "(assert " + Of(a.input) + " => " + (a.tier ? Of(a.tier) + ": " : "") + '{' +
               a.expected + "})";
    }
    std::string operator()(const Include& i) const { return "(include " + Of(i.file) + ')'; }
};

}  // namespace

std::string Printed(const Statement& statement) {
    return std::visit(Printer(), statement);
}

std::string Printed(const File& file) {
    std::string text;
    for (const Statement& statement : file.statements) text += Printed(statement) + '\n';
    return text;
}

}  // namespace mlds::rules::syntax
