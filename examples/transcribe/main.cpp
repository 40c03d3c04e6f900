// transcribe: a small host of mlds::rules. It prints what an engine hands to its synthesiser.
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "mlds/mlds.h"
#include "mlds/rules/rulehost.h"
#include "mlds/rules/ruleset.h"

namespace {

constexpr int kDone = 0;
constexpr int kFailed = 1;  // an input
constexpr int kBadUse = 2;  // the rules or the command line

// What this engine needs of a language, looked up once: streams stay where they are.
struct Tiers {
    explicit Tiers(CPlexa& plexa)
        : pPhone(plexa.pStream("phone")),
          pWord(plexa.pStream("word")),
          pTime(plexa.pStream("time")),
          stress(pPhone != nullptr ? pPhone->GetFieldIndex("stress") : -1) {}

    bool complete() const { return pPhone && pWord && pTime && stress >= 0; }

    CStream* pPhone;
    CStream* pWord;
    CStream* pTime;
    int stress;
};

CToken* TokenBehind(CSyncMark* pMark) {
    CStreamObj* p = pMark->GetNextStreamObj();
    return p != nullptr && p->GetObjectType(otToken) ? static_cast<CToken*>(p) : nullptr;
}

void PrintLine(int begin, int duration, const std::string& phone, int stress,
               const std::string& word) {
    std::cout << std::setw(6) << begin << std::setw(5) << duration << "  " << std::left
              << std::setw(3) << phone << std::right << stress;
    if (!word.empty()) std::cout << "  " << word;
    std::cout << '\n';
}

// A line for every phone, and one for every pause, where there is time without a phone.
void PrintPhones(mlds::RuleHost& host, const Tiers& tiers) {
    CPlexa& plexa = host.plexa();
    CSyncMark* pSince = tiers.pPhone->pGetFirstStreamObj();  // the last mark that has a time
    CToken* pPhone = nullptr;                                // since the last mark
    std::string word;
    int begin = 0;
    for (CStreamObj* p = pSince; p != nullptr; p = p->GetNextStreamObj()) {
        if (p->GetObjectType(otToken)) {
            pPhone = static_cast<CToken*>(p);
            continue;
        }
        auto* const pMark = static_cast<CSyncMark*>(p);
        // The mark stands for an instant, and its partner in the time stream says which.
        const int duration = std::max(0, plexa.Duration(tiers.pTime, pSince, pMark));
        if (pPhone != nullptr) {
            PrintLine(begin, duration, pPhone->GetNameField(),
                      pPhone->GetFieldValueInt(tiers.stress), word);
        } else if (duration > 0) {
            PrintLine(begin, duration, "_", 0, "");
        }
        begin += duration;
        pPhone = nullptr;
        if (pMark->GetCorrespondingSyncMark(tiers.pTime) != nullptr) pSince = pMark;
        // A mark with a partner among the words is the edge of one.
        if (CSyncMark* pEdge = pMark->GetCorrespondingSyncMark(tiers.pWord)) {
            CToken* const pWord = TokenBehind(pEdge);
            word = pWord != nullptr ? host.Label(pWord, false) : "";
        }
    }
}

// An utterance a line. False if something of it could not be done.
bool Transcribe(mlds::RuleHost& host, const Tiers& tiers, std::istream& in,
                const std::string& name) {
    bool bDone = true;
    std::string line;
    for (int number = 1; std::getline(in, line); ++number) {
        if (line.find_first_not_of(" \t\r") == std::string::npos) continue;
        const mlds::RunOutcome outcome = host.Run(line);
        const std::string place = name + ':' + std::to_string(number);
        for (const mlds::rules::TextFault& fault : outcome.faults) {
            std::cerr << place << ':' << fault.column << ": " << fault.what << '\n';
        }
        bDone = bDone && outcome.bDone;
        if (!outcome.bDone) continue;
        std::cout << place << '\n';
        PrintPhones(host, tiers);
    }
    if (!in.bad() && in.eof()) return bDone;
    std::cerr << "transcribe: cannot read " << name << ": " << std::strerror(errno) << '\n';
    return false;
}

bool TranscribeAll(mlds::RuleHost& host, const Tiers& tiers, std::vector<std::string> files) {
    if (files.empty()) files.emplace_back("-");
    bool bDone = true;
    for (const std::string& file : files) {
        if (file == "-") {
            bDone = Transcribe(host, tiers, std::cin, "<stdin>") && bDone;
        } else {
            std::ifstream in(file, std::ios::binary);
            bDone = Transcribe(host, tiers, in, file) && bDone;
        }
    }
    if (std::cout.flush()) return bDone;
    std::cerr << "transcribe: cannot write to standard output\n";
    return false;
}

}  // namespace

int main(int argc, char** argv) {
    std::vector<std::string> files(argv + 1, argv + argc);
    std::string rules = TRANSCRIBE_RULES;  // Spanish, as it is in the source tree
    if (files.size() >= 2 && files.front() == "--rules") {
        rules = files[1];
        files.erase(files.begin(), files.begin() + 2);
    }
    if (std::ranges::any_of(files, [](const auto& f) { return f.size() > 1 && f[0] == '-'; })) {
        std::cerr << "usage: transcribe [--rules RULES] [FILE...]\n";
        return kBadUse;
    }

    mlds::rules::Diagnostics diagnostics;
    const std::shared_ptr<const mlds::RuleSet> pRules = mlds::RuleSet::Read(rules, diagnostics);
    std::cerr << diagnostics.Text();  // warnings too
    if (!pRules) return kBadUse;

    mlds::RuleHost host(pRules);
    const Tiers tiers(host.plexa());
    if (!tiers.complete()) {
        std::cerr << rules << ": this engine needs the tiers phone, with stress, word and time\n";
        return kBadUse;
    }
    return TranscribeAll(host, tiers, files) ? kDone : kFailed;
}
