// What letters sound like beside others.
#ifndef TRANSCRIBE_LETTERRULES_H
#define TRANSCRIBE_LETTERRULES_H

#include <iosfwd>
#include <stdexcept>
#include <string>
#include <vector>

#include "interval.h"
#include "mlds/testasm/testasm.h"
#include "tiers.h"
#include "trace.h"
#include "view.h"

namespace transcribe {

/// Phones in the notation that fills a stream, and the end of the letters that they stand for.
struct Sound {
    std::string phones;
    CSyncMark* pEnd;
};

/// What is wrong with rules: a line for every fault, with file, line and rule.
struct RulesError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Rules in the language of testasm, and what messages call them.
struct RulesText {
    std::string file;
    std::string text;
};

/// The rules that are a part of the program, those of rules.mta.
RulesText OwnRules();
/// Throws std::runtime_error if the file cannot be read.
RulesText RulesFromFile(const std::string& path);

/// The declarations of what rules may name, as `mlds-testasm --schema` reads them.
std::string NamesForRules();

/// Rules, assembled for the given tiers, which must outlive them.
class LetterRules {
public:
    /// Leaves the tiers empty. Every search is told to `pTrace`, unless that is null. Throws
    /// RulesError if something is wrong with the rules or their phones.
    LetterRules(Tiers& tiers, const RulesText& rules, std::ostream* pTrace);
    LetterRules(const LetterRules&) = delete;
    LetterRules& operator=(const LetterRules&) = delete;
    ~LetterRules() { m_tiers.plexa.SetTestObserver(nullptr); }

    /// The sound of a letter of "inp" and maybe of those behind it: that of the first rule which
    /// holds there, or else the letter's own. Throws RulesError if the rule has not said
    /// where its letters end.
    Sound SoundOf(const Interval& letter);
    /// The name of the rule that held last; "no rule" if none did.
    const std::string& LastRule() const { return m_lastRule; }
    /// Lets a viewer ask for something between two rules. Null for none.
    void SetView(View* pView) { m_pView = pView; }

private:
    struct Rule {
        std::string name;
        std::string phones;
        int base;
    };

    void ReadPhones();

    Tiers& m_tiers;
    std::string m_file;
    CSyncMark* m_pBegin = nullptr;
    CSyncMark* m_pEnd = nullptr;
    CVarList m_variables;
    mlds_testasm::Assembly m_assembly;
    std::vector<Rule> m_rules;
    Trace m_trace;
    bool m_bTraced;
    std::string m_lastRule;
    View* m_pView = nullptr;
};

}  // namespace transcribe

#endif
