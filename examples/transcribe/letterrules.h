// What letters sound like beside others.
#ifndef TRANSCRIBE_LETTERRULES_H
#define TRANSCRIBE_LETTERRULES_H

#include <iosfwd>
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

/// The tests of rules.mta, assembled for the given tiers, which must outlive them.
class LetterRules {
public:
    /// Every search is told to `pTrace`, unless that is null.
    LetterRules(Tiers& tiers, std::ostream* pTrace);
    LetterRules(const LetterRules&) = delete;
    LetterRules& operator=(const LetterRules&) = delete;
    ~LetterRules() { m_tiers.plexa.SetTestObserver(nullptr); }

    /// The sound of a letter of "inp" and maybe of those behind it: that of the first rule which
    /// holds there, or else the letter's own.
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

    Tiers& m_tiers;
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
