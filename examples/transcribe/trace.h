// What people debug rules with.
#ifndef TRANSCRIBE_TRACE_H
#define TRANSCRIBE_TRACE_H

#include <iosfwd>
#include <optional>
#include <string>

#include "mlds/testasm/testasm.h"
#include "tiers.h"

namespace transcribe {

/// Prints the tests that are tried: which one holds and what it binds, or at which instruction and
/// place in the word each one fails.
class Trace final : public CPlexaTestObserver {
public:
    /// Refers to everything it is given. Without a stream it must not be used.
    Trace(Tiers& tiers, const mlds_testasm::Assembly& assembly, const std::string& file,
          CVarList& variables, std::ostream* pOut)
        : m_tiers(tiers),
          m_assembly(assembly),
          m_file(file),
          m_variables(variables),
          m_pOut(pOut) {}

    /// A letter at which rules are going to be tried, by the mark in front of it.
    void BeginLetter(CSyncMark* pBegin);
    /// None held there.
    void NoRule(const char* phones);

    void BeforeTest(const char* name, int base) override;
    void AfterTest(bool bHolds) override;
    void BeforeInstruction(const CPlexaTestStep& step) override;
    void AfterInstruction(const CPlexaTestStep& step, PTestFuncReturnType result) override;

private:
    struct Failure {
        int instruction;
        std::string place;
    };

    CSyncMark* EdgeOfWord(CSyncMark* pMark, ScanDirectionType direction) const;
    std::string Place(CStreamObj* pPosition) const;

    Tiers& m_tiers;
    const mlds_testasm::Assembly& m_assembly;
    const std::string& m_file;  // where the rules stand
    CVarList& m_variables;
    std::ostream* m_pOut;
    CSyncMark* m_pWordBegin = nullptr;
    CSyncMark* m_pWordEnd = nullptr;
    int m_base = 0;
    int m_depth = 0;                     // of the instruction that runs
    std::optional<Failure> m_innermost;  // unless something has matched since
    std::optional<Failure> m_failure;    // of the focus, or of the context that failed first
};

}  // namespace transcribe

#endif
