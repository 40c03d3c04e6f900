// The tiers that the benchmarks build: a phone stream as a real host would declare it, and others
// tied to it.
#ifndef MLDS_BENCH_TIERS_H
#define MLDS_BENCH_TIERS_H

#include <mlds/mlds.h>

#include <array>
#include <string>
#include <vector>

namespace bench {

/// The names of phones: the first kOneLetterPhones are single characters.
constexpr int kPhones = 40;
constexpr int kOneLetterPhones = 30;
extern const std::array<const char*, kPhones> g_phones;

/// Field "name" with its possible values and the fields "vowel", "manner" and "voice", whose sets
/// derive them from it.
void AddPhoneFields(CStream* pStream);

/// A container with one stream of phones, the first mark in place.
struct PhoneTier {
    PhoneTier();

    void Restart() {
        pStream->StreamReset();
        pLast = pStream->pGetFirstStreamObj();
        AppendMark();
    }
    void AppendMark() {
        CSyncMark* pMark = plexa.CreateSyncMark(pStream);
        pStream->InsertStreamObj(pMark, pLast, nullptr);
        pLast = pMark;
    }
    /// A token with the mark on its right.
    void Append(const char* name) {
        CSyncMark* pLeft = pLast;
        AppendMark();
        pStream->InsertStreamObj(pStream->CreateToken(name), pLeft, pLast);
    }

    CPlexa plexa{nullptr};
    CStream* pStream;
    CSyncMark* pLast;
};

/// The names of n tokens, in an order without pattern; the first `among` phones are used.
std::vector<const char*> Names(std::int64_t n, int among = kPhones);

/// `nStreams` streams of which stream 0, "phone", has n tokens. The marks of the others are tied to
/// every fifth mark of it (stream 1, "word") or to every third to eleventh, with tokens between;
/// those of the last, from three streams on, have no tokens between them.
struct TiedTiers {
    TiedTiers(int nStreams, std::int64_t n);

    PhoneTier phones;
    std::vector<CStream*> streams;
    std::vector<CSyncMark*> phoneMarks;

private:
    void AddTier(int number);
};

}  // namespace bench

#endif
