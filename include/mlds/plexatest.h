// The interpreter of compiled rule tests.
#ifndef MLDS_PLEXATEST_H
#define MLDS_PLEXATEST_H

#include "mlds/export.h"
#include "mlds/streamobj.h"

/// The result of a test operator: a truth for patterns, a number for values.
union PTestFuncReturnType {
    bool truth;
    int value;
};

/// Keeps repetition from going round in circles: the pairs of position and instruction at which a
/// continuation is being evaluated, at most 100.
class MLDS_API CPlexaTestBackupControl {
public:
    CPlexaTestBackupControl();
    CPlexaTestBackupControl(const CPlexaTestBackupControl&) = default;
    CPlexaTestBackupControl& operator=(const CPlexaTestBackupControl& other) = default;

    void ResetBackupControl();
    /// Adds a pair; a full stack is left as it is.
    void Push(CSyncMark* pMark, int instruction);
    /// Takes the last pair off, if there is one.
    void Pop();
    /// True if the pair is on the stack.
    bool CheckLoop(const CSyncMark* pMark, int instruction);

private:
    static constexpr int kMaxPairs = 100;

    CSyncMark* m_pMarks[kMaxPairs];
    int m_instructions[kMaxPairs];
    int m_nPairs;
};

/// Evaluates rule tests against the structure of one container.
class MLDS_API CPlexaTest {
public:
    explicit CPlexaTest(CPlexa* pPlexa);
    CPlexaTest(const CPlexaTest&) = default;
    CPlexaTest& operator=(const CPlexaTest& other) = default;

    /// Evaluates the test whose header is element `base` of the program. Not available yet: false.
    bool Test(const char* name, unsigned char const (*const program)[5], int base);
    /// While a test runs, the sync mark from which a walk may go on in spite of a fence; null
    /// otherwise.
    CSyncMark* getSyncMarkItsOKtoAdvanceFrom();

private:
    friend struct mlds::Internals;

    static constexpr int kOpcodes = 53;
    typedef PTestFuncReturnType (CPlexaTest::*Handler)(CStream*, int, CSyncMark**,
                                                       ScanDirectionType, int*);

    CPlexa* m_pPlexa;
    Handler m_handlers[kOpcodes];
    CVarList* m_pVarList;
    unsigned char const (*m_pProgram)[5];
    CPlexaTestBackupControl m_backup;
    int m_nBase;
    CSyncMark* m_pAdvanceMark;
};

#endif
