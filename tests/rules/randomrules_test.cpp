// Rules lowered to tests, and run.
#include <cstdlib>
#include <sstream>

#include "randompatterns.h"

namespace mlds_test {
namespace {

using mlds::rules::Block;
using mlds::rules::Model;
using mlds::rules::Rule;

int FromEnvironment(const char* name, int otherwise) {
    const char* text = std::getenv(name);
    return text != nullptr ? std::atoi(text) : otherwise;
}

struct Outcomes {
    int held = 0;
    int failed = 0;
};

// The places in the naive tier, from its first end to its last one, are the marks between the
// sentinels of the stream and those.
std::vector<CSyncMark*> MarksOf(CStream* pStream) {
    std::vector<CSyncMark*> marks;
    for (CStreamObj* p : Chain(pStream)) {
        if (p->GetObjectType(otSyncMark)) marks.push_back(static_cast<CSyncMark*>(p));
    }
    return marks;
}

std::string Described(const Lowering& lowering, CPlexa& plexa) {
    std::ostringstream text;
    text << Picture(plexa.pStream(kLetters)) << " " << Ties(plexa) << "\n";
    for (std::size_t i = 0; i < lowering.lowered().tests.size(); ++i) {
        text << lowering.Listing(static_cast<int>(i));
    }
    return text.str();
}

// The end of the focus, and the marks of the rule.
std::string Bound(const Lowering& lowering) {
    return Where(lowering.pEnd) + " " + Where(lowering.marks[2]) + " " + Where(lowering.marks[3]);
}

std::string Expected(const NaiveMatch& match, const std::vector<CSyncMark*>& marks) {
    std::string bound = Where(marks[static_cast<std::size_t>(match.end)]);
    for (const int variable : {2, 3}) {
        const auto mark = match.marks.find(variable);
        const bool bSet = mark != match.marks.end();
        bound += " " + Where(bSet ? marks[static_cast<std::size_t>(mark->second)] : nullptr);
    }
    return bound;
}

// MLDS_PATTERNS=100000 for more, MLDS_SEED=n to begin elsewhere.
TEST(Lowering, RandomRulesApplyWhereANaiveMatcherSays) {
    const int nPatterns = FromEnvironment("MLDS_PATTERNS", 3000);
    const int seed = FromEnvironment("MLDS_SEED", 1);
    Outcomes all, withLeft, insertions;
    int nTooLong = 0;
    Model model = MakeLetters();
    CPlexa plexa(nullptr);
    ASSERT_TRUE(DeclareTiers(plexa, model));
    for (int i = 0; i < nPatterns; ++i) {
        RandomRules random(static_cast<unsigned>(seed + i));
        Block block;
        block.name = "block";
        block.from = kLetters;
        block.within = random.Once(2) ? kWords : mlds::rules::kNoTier;
        block.rules.push_back(random.MakeRule());
        const Rule& rule = block.rules[0];
        model.blocks = {block};
        Lowering lowering(model, rule.variables);
        if (lowering.diagnostics().errors() > 0) {
            ASSERT_NE(lowering.diagnostics().Text().find("instructions"), std::string::npos)
                << lowering.diagnostics().Text();
            ++nTooLong;
            continue;
        }
        ASSERT_EQ(lowering.Faults(), "") << "seed " << seed + i;
        for (int k = 0; k < 3; ++k) {
            const NaiveTier tier = random.MakeTier(model, plexa);
            const std::vector<CSyncMark*> marks = MarksOf(plexa.pStream(kLetters));
            ASSERT_EQ(marks.size(), tier.edges.size());
            NaiveMatcher naive(tier, block.within != mlds::rules::kNoTier);
            for (std::size_t at = 1; at + 1 < marks.size(); ++at) {
                const auto expected = naive.Apply(rule, static_cast<int>(at));
                const bool bHolds = lowering.Apply(plexa, 0, 0, marks[at]);
                ASSERT_EQ(bHolds, expected.has_value())
                    << "seed " << seed + i << " at " << Where(marks[at]) << "\n"
                    << Described(lowering, plexa);
                if (bHolds) {
                    ASSERT_EQ(Bound(lowering), Expected(*expected, marks))
                        << "seed " << seed + i << " at " << Where(marks[at]) << "\n"
                        << Described(lowering, plexa);
                }
                const bool bLeft = !rule.where.empty() && !rule.where[0].left.parts.empty();
                for (auto [pOutcomes, bCounts] :
                     {std::pair(&all, true), std::pair(&withLeft, bLeft),
                      std::pair(&insertions, rule.bInsertion)}) {
                    if (bCounts) ++(bHolds ? pOutcomes->held : pOutcomes->failed);
                }
            }
        }
    }
    // What never holds, or always does, compares nothing.
    for (const Outcomes& outcomes : {all, withLeft, insertions}) {
        EXPECT_GT(outcomes.held, nPatterns / 5);
        EXPECT_GT(outcomes.failed, nPatterns / 5);
    }
    EXPECT_LT(nTooLong, nPatterns / 10);
    RecordProperty("held", all.held);
    RecordProperty("failed", all.failed);
}

}  // namespace
}  // namespace mlds_test
