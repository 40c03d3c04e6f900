// Filling streams from text.
#include <cstdlib>
#include <cstring>
#include <string>

#include "compare.h"
#include "hand.h"
#include "tiers.h"

using bench::HandNode;

namespace {

constexpr int kTokens = 100;  // in one text

enum Form { plain, quoted, fieldList };

std::string Text(Form form) {
    std::string text;
    for (std::string name :
         bench::Names(kTokens, form == plain ? bench::kOneLetterPhones : bench::kPhones)) {
        if (form == quoted) name = "'" + name + "'";
        if (form == fieldList) name = "<" + name + " weight:7 stop>";
        text += name;
    }
    return text;
}

// What stands after a token's name: a number for a field, and a class that sets another.
const char* SetFieldsByHand(HandNode* pToken, const char* p) {
    while (*p == ' ') {
        ++p;
        const std::size_t length = std::strcspn(p, " :>");
        if (length == 6 && std::memcmp(p, "weight", length) == 0) {
            pToken->pValues->values[3] = std::atoi(p + length + 1);
        } else if (length == 4 && std::memcmp(p, "stop", length) == 0) {
            pToken->pValues->values[2] = 1;
        }
        p += std::strcspn(p, " >");
    }
    return p;
}

/// An open place in a stream of the library and in one by hand.
struct TextCase {
    explicit TextCase(Form form) : text(Text(form)) {
        tier.pStream->AddField("weight")->SetFieldType(fvInt);
        Restart();
    }
    void Restart() {
        tier.Restart();
        pLeft = tier.pLast;
        tier.AppendMark();
        hand.Reset();
        hand.Append("a");
        hand.Append("a");
    }
    void InsertByHand() {
        HandNode* pRight = hand.Last()->pPrev;
        char name[20];
        for (const char* p = text.c_str(); *p != '\0';) {
            const char opening = *p;
            const bool bPlain = opening != '\'' && opening != '<';
            if (!bPlain) ++p;
            const std::size_t length = bPlain ? 1 : std::strcspn(p, opening == '<' ? " >" : "'");
            std::memcpy(name, p, length);
            name[length] = '\0';
            p += length;
            HandNode* pToken = hand.InsertLeftOf(pRight, name);
            if (opening == '<') p = SetFieldsByHand(pToken, p);
            if (!bPlain) ++p;
        }
    }

    std::string text;
    bench::PhoneTier tier;
    CSyncMark* pLeft;
    bench::HandTier hand;
};

// Per token: a text replaces the tokens of the text before.
void InsertString(benchmark::State& state, Form form) {
    TextCase c(form);
    CStream* pStream = c.tier.pStream;
    bench::Compare(
        state, kTokens,
        [&] { c.tier.plexa.InsertString(pStream, c.text.c_str(), c.pLeft, c.tier.pLast); },
        [&] {
            c.hand.RemoveBetween(c.hand.First(), c.hand.Last()->pPrev);
            c.InsertByHand();
        });
    if (pStream->GetNumTokens() != kTokens) state.SkipWithError("tokens are missing");
}
BENCHMARK_CAPTURE(InsertString, plain, plain);
BENCHMARK_CAPTURE(InsertString, quoted, quoted);
BENCHMARK_CAPTURE(InsertString, field_list, fieldList);

// Per token: texts of 100 tokens follow each other in front of one mark, up to N tokens.
void InsertManyStrings(benchmark::State& state) {
    TextCase c(plain);
    const std::int64_t nTexts = state.range(0) / kTokens;
    bench::Compare(
        state, state.range(0),
        [&] {
            c.Restart();
            CSyncMark* pAt = c.tier.pLast;
            return bench::Nanoseconds([&] {
                for (std::int64_t i = 0; i < nTexts; ++i) {
                    c.tier.plexa.InsertString(c.tier.pStream, c.text.c_str(), pAt, pAt);
                }
            });
        },
        [&] {
            c.hand.Reset();
            c.hand.Append("a");
            return bench::Nanoseconds([&] {
                for (std::int64_t i = 0; i < nTexts; ++i) c.InsertByHand();
            });
        });
}
BENCHMARK(InsertManyStrings)->Apply(bench::Sizes);

}  // namespace
