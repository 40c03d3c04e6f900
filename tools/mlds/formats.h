// What the formats of "mlds run" make of one utterance.
#ifndef MLDS_PROGRAM_FORMATS_H
#define MLDS_PROGRAM_FORMATS_H

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "inputs.h"
#include "mlds/io/timeline.h"
#include "mlds/io/view.h"
#include "mlds/rules/rulehost.h"

namespace mlds_program {

enum class Format { tiers, phones, ipa, textGrid, svg };

/// Formats that are files, and show time.
inline bool IsTimed(Format format) {
    return format == Format::textGrid || format == Format::svg;
}

/// How every utterance is worked on.
struct Work {
    Format format = Format::tiers;
    mlds::RunOptions run;
    /// The tier that is wanted, and the words in it; kNoTier where a format shows all tiers or
    /// rules have no words.
    mlds::rules::TierId shown = mlds::rules::kNoTier;
    mlds::rules::TierId words = mlds::rules::kNoTier;
};

/// Settles which tiers a format needs. False if the rules do not have them, which is then said.
bool PlanWork(const mlds::RuleSet& rules, Work& work);

/// What became of an utterance.
struct Rendered {
    bool bDone = false;
    std::string text;
    mlds::io::Timeline timeline;  ///< of formats that show time; text is empty then
    std::vector<mlds::rules::TextFault> faults;
    std::string error;  ///< what went wrong with the program itself, such as memory that ran out
};

/// Runs the rules and writes down what they made. One thread at a time has it.
class Renderer {
public:
    Renderer(std::shared_ptr<const mlds::RuleSet> pRules, const Work& work);

    Rendered Render(const std::string& text) noexcept;

private:
    void Write(Rendered& rendered);

    Work m_work;
    mlds::RuleHost m_host;
    mlds::io::View m_view;
};

}  // namespace mlds_program

#endif
