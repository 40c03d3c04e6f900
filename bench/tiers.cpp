// The declarations of the streams, and structures tied together.
#include "tiers.h"

namespace bench {

const std::array<const char*, kPhones> g_phones = {
    "a", "e", "i",  "o",  "u",  "A", "E",  "O",               // vowels
    "p", "t", "k",  "b",  "d",  "g", "q",  "c",               // stops
    "f", "s", "x",  "h",  "v",  "z", "S",  "Z",               // fricatives
    "m", "n", "N",  "l",  "r",  "R", "nj", "ng", "lj", "rr",  // nasals and liquids
    "w", "j", "tS", "dZ", "ts", "dz"};                        // glides and affricates

void AddPhoneFields(CStream* pStream) {
    CField* pName = pStream->AddField("name");
    pName->SetPossibleValues(g_phones.data(), kPhones);

    CField* pVowel = pStream->AddField("vowel");
    const char* const vowels[] = {"a", "O"};
    pVowel->CreateFieldValueSet("vowel")->SetIncludeRanges(vowels, 1);
    pVowel->CreateFieldValueSet("consonant")->SetExcludeRanges(vowels, 1);

    CField* pManner = pStream->AddField("manner");
    const char* const stops[] = {"p", "c"};
    const char* const fricatives[] = {"f", "Z"};
    const char* const sonorants[] = {"m", "rr", "w", "j"};
    pManner->CreateFieldValueSet("open")->SetIncludeRanges(vowels, 1);
    pManner->CreateFieldValueSet("stop")->SetIncludeRanges(stops, 1);
    pManner->CreateFieldValueSet("fricative")->SetIncludeRanges(fricatives, 1);
    pManner->CreateFieldValueSet("sonorant")->SetIncludeRanges(sonorants, 2);
    pManner->CreateFieldValueSet("other")->SetName("undefined");

    CField* pVoice = pStream->AddField("voice");
    CFieldValueSet* pVoiceless = pVoice->CreateFieldValueSet("voiceless");
    for (const char* name : {"p", "t", "k", "q", "c", "f", "s", "x", "h", "S", "tS", "ts"}) {
        pVoiceless->AddIncludeValue(name);
    }
    pVoice->CreateFieldValueSet("voiced")->SetName("undefined");
}

PhoneTier::PhoneTier() : pStream(plexa.pStream(plexa.AddStream("phone"))) {
    AddPhoneFields(pStream);
    Restart();
}

std::vector<const char*> Names(std::int64_t n, int among) {
    std::vector<const char*> names;
    std::uint32_t random = 1;
    for (std::int64_t i = 0; i < n; ++i) {
        random = random * 1664525u + 1013904223u;
        names.push_back(g_phones[(random >> 16) % static_cast<std::uint32_t>(among)]);
    }
    return names;
}

TiedTiers::TiedTiers(int nStreams, std::int64_t n) {
    streams.push_back(phones.pStream);
    for (int i = 1; i < nStreams; ++i) {
        const std::string name = i == 1 ? "word" : "tier" + std::to_string(i);
        streams.push_back(phones.plexa.pStream(phones.plexa.AddStream(name.c_str())));
        AddPhoneFields(streams.back());
    }
    phones.plexa.Initialize();
    phoneMarks.push_back(phones.pLast);
    for (const char* name : Names(n)) {
        phones.Append(name);
        phoneMarks.push_back(phones.pLast);
    }
    for (int i = 1; i < nStreams; ++i) AddTier(i);
    phones.plexa.RankPopulatedStreams();
}

void TiedTiers::AddTier(int number) {
    CStream* pStream = streams[static_cast<std::size_t>(number)];
    const std::size_t step = number == 1 ? 5 : 3 + static_cast<std::size_t>(number) % 9;
    const bool bTokens = number == 1 || number + 1 < static_cast<int>(streams.size());
    CSyncMark* pBefore = pStream->pGetFirstStreamObj();
    for (std::size_t i = 0; i < phoneMarks.size(); i += step) {
        CSyncMark* pMark = phones.plexa.CreateSyncMark(pStream);
        pStream->InsertStreamObj(pMark, pBefore, nullptr);
        phoneMarks[i]->SetToSynchronous(pMark);
        if (i > 0 && bTokens) {
            pStream->InsertStreamObj(pStream->CreateToken(g_phones[i % kPhones]), pBefore, pMark);
        }
        pBefore = pMark;
    }
}

}  // namespace bench
