// Places in words, as a trace shows them: gu|erra.
#ifndef MLDS_PROGRAM_PLACES_H
#define MLDS_PROGRAM_PLACES_H

#include <string>

#include "mlds/rules/rulehost.h"

namespace mlds_program {

/// What is shown around a place: the word that it is in, or as much of the utterance.
class Scope {
public:
    /// The tokens of a block's tier around a mark, up to the edges of the tier that the block stays
    /// within, or else of words.
    Scope(mlds::RuleHost& host, const mlds::rules::Block& block, CSyncMark* pAt);

    /// The scope with a bar at a mark of it.
    std::string WithBar(CSyncMark* pMark) const;
    /// Which token follows a mark, counted from 1.
    int NumberOf(CSyncMark* pMark) const;

private:
    mlds::RuleHost& m_host;
    CSyncMark* m_pBegin;
    CSyncMark* m_pEnd;
    bool m_bTight;  // tokens need no blanks between them
};

}  // namespace mlds_program

#endif
