// All rules of a model as one program of tests.
#include "lowering/lowering.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "lowering/rulelowering.h"
#include "mlds/testasm/image.h"

namespace mlds::rules {

namespace {

// Tests stand in one array, spans first, then the rules in their order. Errors are told at the
// rule, and the other rules are lowered all the same, so that one run finds all that are too long.
class ModelLowering {
public:
    ModelLowering(const Model& model, const Sources& sources, Diagnostics& diagnostics)
        : m_model(model), m_sources(sources), m_diagnostics(diagnostics) {}

    Lowered Run() {
        for (const Tier& tier : m_model.tiers) LowerSpans(tier);
        for (const Block& block : m_model.blocks) {
            std::vector<LoweredRule>& rules = m_lowered.rules.emplace_back();
            for (std::size_t i = 0; i < block.rules.size(); ++i) {
                const std::string name = block.name + "." + std::to_string(i + 1);
                rules.push_back(LowerRule(block, block.rules[i], name));
            }
        }
        Assemble();
        return std::move(m_lowered);
    }

private:
    void LowerSpans(const Tier& tier) {
        std::vector<int>& spans = m_lowered.spans.emplace_back();
        for (std::size_t i = 0; i < tier.spanPatterns.size(); ++i) {
            const SpanPattern& span = tier.spanPatterns[i];
            bool bTooLong = false;
            // A block may have the name of a tier.
            std::string name = "tier " + tier.name + "." + std::to_string(i + 1);
            BuiltTest built = LowerSpan(tier, span, std::move(name), &bTooLong);
            m_nLongest = 0;
            spans.push_back(Take(std::move(built), bTooLong));
            CheckLength(span.span, "this pattern", "name a part of it in a tier of its own");
        }
    }

    // A rule without a "/" has one test; one with several has a test for each, as one environment
    // may look to both sides and a test has no way to try another pair of them.
    LoweredRule LowerRule(const Block& block, const Rule& rule, const std::string& name) {
        LoweredRule lowered;
        const int nVariables = static_cast<int>(rule.variables.size());
        if (nVariables > kMostRuleVariables) {
            m_diagnostics.Error(m_sources, rule.span,
                                "this rule has " + std::to_string(nVariables) +
                                    " captures and marks, and may have " +
                                    std::to_string(kMostRuleVariables) +
                                    "; write two rules, or leave out names that are not used");
            return lowered;
        }
        m_nLongest = 0;
        const auto lower = [&](const Environment& environment, EnvironmentUse use,
                               const std::string& testName) {
            if (NeedEachOther(rule, environment)) {
                m_diagnostics.Error(
                    m_sources, environment.span,
                    "the left environment asks for what is bound right of it, and that for what "
                    "the left one binds; one of them comes first: ask in one of them alone");
            }
            bool bTooLong = false;
            BuiltTest built = LowerEnvironment(block, rule, environment, use, testName, &bTooLong);
            return Take(std::move(built), bTooLong);
        };
        if (rule.where.empty()) {
            lowered.where.push_back(lower(Environment(), EnvironmentUse::where, name));
        }
        for (std::size_t i = 0; i < rule.where.size(); ++i) {
            const std::string number = rule.where.size() > 1 ? "/" + std::to_string(i + 1) : "";
            lowered.where.push_back(lower(rule.where[i], EnvironmentUse::where, name + number));
        }
        for (std::size_t i = 0; i < rule.except.size(); ++i) {
            const std::string number = "\\" + std::to_string(i + 1);
            lowered.except.push_back(lower(rule.except[i], EnvironmentUse::except, name + number));
        }
        CheckLength(rule.span, "this rule",
                    "write its environments as rules of their own, or name a class for a long list "
                    "of tokens and a feature for a class that is used often");
        return lowered;
    }

    // The index of a new test. One that is too long stands there without its instructions, which
    // an error explains.
    int Take(BuiltTest built, bool bTooLong) {
        // What counts is what the assembler makes: equal constants are one instruction there.
        const mlds_testasm::Layout layout = mlds_testasm::LayOut(built.test);
        const int n = bTooLong ? kEndless : static_cast<int>(layout.order.size());
        m_nLongest = std::max(m_nLongest, n);
        LoweredTest& test = m_lowered.tests.emplace_back();
        test.name = built.test.name;
        if (n <= mlds_testasm::kMostInstructions) {
            for (const NodeId id : layout.order) {
                test.elements.push_back(built.elements[static_cast<std::size_t>(id)]);
            }
            m_lowered.program.tests.push_back(std::move(built.test));
        }
        return static_cast<int>(m_lowered.tests.size()) - 1;
    }

    void CheckLength(const Span& span, const std::string& what, const std::string& help) {
        if (m_nLongest <= mlds_testasm::kMostInstructions) return;
        const std::string n = m_nLongest == kEndless ? "far too many" : std::to_string(m_nLongest);
        m_diagnostics.Error(m_sources, span,
                            what + " needs " + n + " instructions, a test holds " +
                                std::to_string(mlds_testasm::kMostInstructions) +
                                "; repeat less often, or " + help);
        m_bFaulty = true;
    }

    // Once all tests are there; with one missing, the indices of tests and images would differ.
    void Assemble() {
        if (m_bFaulty) return;
        mlds_testasm::Diagnostics diagnostics("rules");
        m_lowered.image = mlds_testasm::Lower(m_lowered.program, diagnostics);
        const std::vector<mlds_testasm::Bytes>& code = m_lowered.image.code;
        m_lowered.code.reset(new unsigned char[code.size()][5]);
        for (std::size_t i = 0; i < code.size(); ++i) {
            std::memcpy(m_lowered.code[i], code[i].data(), code[i].size());
        }
        for (std::size_t i = 0; i < m_lowered.tests.size(); ++i) {
            m_lowered.tests[i].base = m_lowered.image.tests[i].base;
        }
    }

    // Stands for a number that nobody counted to the end.
    static constexpr int kEndless = 1'000'000;

    const Model& m_model;
    const Sources& m_sources;
    Diagnostics& m_diagnostics;
    Lowered m_lowered;
    int m_nLongest = 0;
    bool m_bFaulty = false;
};

}  // namespace

Lowered Lower(const Model& model, const Sources& sources, Diagnostics& diagnostics) {
    return ModelLowering(model, sources, diagnostics).Run();
}

}  // namespace mlds::rules
