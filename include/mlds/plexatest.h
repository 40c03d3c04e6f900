// The interpreter of compiled rule tests.
#ifndef MLDS_PLEXATEST_H
#define MLDS_PLEXATEST_H

#include <cstdint>

#include "mlds/export.h"
#include "mlds/streamobj.h"

/// The result of a test operator: a truth for patterns, a number for values.
union PTestFuncReturnType {
    bool truth;
    int value;
};

/// Keeps repetition from going round in circles: the pairs of position and instruction at which a
/// continuation is being evaluated. The first 100 of them are known.
class MLDS_API CPlexaTestBackupControl {
public:
    CPlexaTestBackupControl();
    CPlexaTestBackupControl(const CPlexaTestBackupControl&) = default;
    CPlexaTestBackupControl& operator=(const CPlexaTestBackupControl& other) = default;

    void ResetBackupControl();
    /// Adds a pair. Beyond 100 it is only counted.
    void Push(CSyncMark* pMark, int instruction);
    /// Takes the last pair off, if there is one.
    void Pop();
    /// True if the pair is on the stack.
    bool CheckLoop(const CSyncMark* pMark, int instruction);

private:
    enum { kMaxPairs = 100 };

    CSyncMark* m_pMarks[kMaxPairs];
    int m_instructions[kMaxPairs];
    int m_nPairs;
};

/// What an observer is told about one instruction.
struct CPlexaTestStep {
    int index;                         ///< relative to the test's header
    const unsigned char* instruction;  ///< its five bytes
    CStream* stream;                   ///< the stream it is evaluated in
    CStreamObj* position;              ///< before it, or after it; null while there is none
    ScanDirectionType direction;
};

/// Watches tests run. An observer sees everything and changes nothing: it must not start a test,
/// and must not edit the structure or the variables.
/// No result depends on it, but that an observed test needs more of the stack: one that nests so
/// deep that it comes to the end of that ends earlier.
class MLDS_API CPlexaTestObserver {
public:
    /// A test begins, and ends. What holds is told after its variables have been assigned.
    virtual void BeforeTest(const char* name, int base);
    virtual void AfterTest(bool bHolds);
    /// An instruction is about to run, and has run with this result.
    virtual void BeforeInstruction(const CPlexaTestStep& step);
    virtual void AfterInstruction(const CPlexaTestStep& step, PTestFuncReturnType result);

protected:
    ~CPlexaTestObserver() = default;
};

/// Evaluates rule tests against the structure of one container.
///
/// A test is a graph of 5-byte instructions. Whatever bytes it consists of, it does no harm: what
/// makes no sense fails, and a test that nests too deep or runs for more than 2^26 instructions,
/// the steps of its searches across streams included, ends false.
///
/// Nearly all of it is private: what is exported is marked, member by member.
class CPlexaTest {
public:
    MLDS_API explicit CPlexaTest(CPlexa* pPlexa);
    CPlexaTest(const CPlexaTest&) = default;
    CPlexaTest& operator=(const CPlexaTest& other) = default;

    /// Evaluates the test whose header is element `base` of the program, with the variables of the
    /// current list, which are assigned if it holds. The program stays the caller's. False also
    /// without a variable list, and for a test that is started by another one.
    MLDS_API bool Test(const char* name, unsigned char const (*const program)[5], int base);
    /// While a test runs, the sync mark from which a walk may go on in spite of a fence; null
    /// otherwise.
    MLDS_API CSyncMark* getSyncMarkItsOKtoAdvanceFrom();

    /// Has every test watched; null ends that. The observer stays the caller's.
    MLDS_API void SetObserver(CPlexaTestObserver* pObserver);

private:
    friend struct mlds::Internals;

    struct Operands {
        int first;
        int second;
    };

    bool RunTest();
    CStream* StreamAt(int index);
    bool ContextHolds(CStream* pStream, int link, CSyncMark* position, ScanDirectionType direction);
    PTestFuncReturnType Evaluate(CStream* pStream, int index, CSyncMark** pp,
                                 ScanDirectionType direction, int* pDone);
    PTestFuncReturnType EvaluateObserved(CStream* pStream, int index, CSyncMark** pp,
                                         ScanDirectionType direction, int* pDone);
    PTestFuncReturnType Dispatch(CStream* pStream, int index, CSyncMark** pp,
                                 ScanDirectionType direction, int* pDone);
    bool MayRun();
    void End();
    std::int32_t Operand(CStream* pStream, int index, CSyncMark** pp, ScanDirectionType direction,
                         int* pDone);
    PTestFuncReturnType Continue(CStream* pStream, int next, CSyncMark* w, CSyncMark** pp,
                                 ScanDirectionType direction, int* pDone);

    // Reading instructions
    const unsigned char* At(int index) const { return m_pHeader[index]; }
    int Byte(int index, int i) const { return At(index)[i]; }
    int ConstantAt(int index) const { return PlexaTestUnPackInt(At(index)); }
    int ShortAt(int index) const { return PlexaTestUnPackShort(At(index)); }
    Operands OperandsOf(int index, ScanDirectionType direction) const {
        const bool bRight = direction == sdRight;
        return {Byte(index, bRight ? 2 : 3), Byte(index, bRight ? 3 : 2)};
    }
    static int PlexaTestUnPackInt(const unsigned char* instruction) {
        return static_cast<std::int32_t>(static_cast<std::uint32_t>(instruction[1]) << 24 |
                                         static_cast<std::uint32_t>(instruction[2]) << 16 |
                                         static_cast<std::uint32_t>(instruction[3]) << 8 |
                                         instruction[4]);
    }
    static int PlexaTestUnPackShort(const unsigned char* instruction) {
        return instruction[2] << 8 | instruction[3];
    }

    // What operators share
    CSyncMark* Cross(CSyncMark* position, ScanDirectionType direction, CStream* pTarget);
    bool FindLimit(CStream* pStream, int link, ScanDirectionType direction, CStreamObj** ppLimit);
    PTestFuncReturnType ContinueEmptyStars(CStream* pStream, int index, CSyncMark** pp,
                                           ScanDirectionType direction, int* pDone);
    PTestFuncReturnType EndStars(CStream* pStream, int index, CSyncMark* w, CSyncMark** pp,
                                 ScanDirectionType direction, int* pDone);
    bool EvaluatePair(CStream* pStream, int index, CSyncMark** pp, ScanDirectionType direction,
                      int* pDone, std::int32_t* pLeft, std::int32_t* pRight);
    CSyncMark* FindContext(CStream* pInto, CSyncMark* pMark, ScanDirectionType direction);
    CToken* TokenOf(int variable);
    CSyncMark* MarkOf(int variable);
    CSyncMark* FindBoundary(CSyncMark* position, CSyncMark* pMark, ScanDirectionType direction);
    CToken* MatchToken(CToken* pModel, int selector, CSyncMark* position,
                       ScanDirectionType direction);
    PTestFuncReturnType StepToContext(CStream* pStream, int index, CSyncMark** pp,
                                      ScanDirectionType direction, int* pDone,
                                      ScanDirectionType step);
    PTestFuncReturnType StepOverMarks(CStream* pStream, int index, CSyncMark** pp,
                                      ScanDirectionType direction, int* pDone,
                                      ScanDirectionType step);
    PTestFuncReturnType StepInTime(CStream* pStream, int index, CSyncMark** pp,
                                   ScanDirectionType direction, int* pDone, ScanDirectionType step);

    // The handlers. Each executes the instruction `index` in a stream, from the position *pp, in a
    // direction. A pattern that matches moves *pp to its end; one that fails leaves it alone.
    // *pDone becomes 1 when the sequence that the instruction belongs to has matched to its end.
    PTestFuncReturnType DoPlexaOp(CStream* pStream, int index, CSyncMark** pp,
                                  ScanDirectionType direction, int* pDone);
    PTestFuncReturnType DoEnumOp(CStream* pStream, int index, CSyncMark** pp,
                                 ScanDirectionType direction, int* pDone);
    PTestFuncReturnType DoAnchorOp(CStream* pStream, int index, CSyncMark** pp,
                                   ScanDirectionType direction, int* pDone);
    PTestFuncReturnType DoOrOp(CStream* pStream, int index, CSyncMark** pp,
                               ScanDirectionType direction, int* pDone);
    PTestFuncReturnType DoAndOp(CStream* pStream, int index, CSyncMark** pp,
                                ScanDirectionType direction, int* pDone);
    PTestFuncReturnType DoNotOp(CStream* pStream, int index, CSyncMark** pp,
                                ScanDirectionType direction, int* pDone);
    PTestFuncReturnType DoAdjOp(CStream* pStream, int index, CSyncMark** pp,
                                ScanDirectionType direction, int* pDone);
    PTestFuncReturnType DoStarOp(CStream* pStream, int index, CSyncMark** pp,
                                 ScanDirectionType direction, int* pDone);
    PTestFuncReturnType DoStarsOp(CStream* pStream, int index, CSyncMark** pp,
                                  ScanDirectionType direction, int* pDone);
    PTestFuncReturnType DoStarsNoBkupOp(CStream* pStream, int index, CSyncMark** pp,
                                        ScanDirectionType direction, int* pDone);
    PTestFuncReturnType DoQmarkOp(CStream* pStream, int index, CSyncMark** pp,
                                  ScanDirectionType direction, int* pDone);
    PTestFuncReturnType DoQmarksOp(CStream* pStream, int index, CSyncMark** pp,
                                   ScanDirectionType direction, int* pDone);
    PTestFuncReturnType DoNegateOp(CStream* pStream, int index, CSyncMark** pp,
                                   ScanDirectionType direction, int* pDone);
    PTestFuncReturnType DoMultOp(CStream* pStream, int index, CSyncMark** pp,
                                 ScanDirectionType direction, int* pDone);
    PTestFuncReturnType DoDivOp(CStream* pStream, int index, CSyncMark** pp,
                                ScanDirectionType direction, int* pDone);
    PTestFuncReturnType DoAddOp(CStream* pStream, int index, CSyncMark** pp,
                                ScanDirectionType direction, int* pDone);
    PTestFuncReturnType DoConstIntOp(CStream* pStream, int index, CSyncMark** pp,
                                     ScanDirectionType direction, int* pDone);
    PTestFuncReturnType DoFieldOp(CStream* pStream, int index, CSyncMark** pp,
                                  ScanDirectionType direction, int* pDone);
    PTestFuncReturnType DoStreamOp(CStream* pStream, int index, CSyncMark** pp,
                                   ScanDirectionType direction, int* pDone);
    PTestFuncReturnType DoEqOp(CStream* pStream, int index, CSyncMark** pp,
                               ScanDirectionType direction, int* pDone);
    PTestFuncReturnType DoNotEqOp(CStream* pStream, int index, CSyncMark** pp,
                                  ScanDirectionType direction, int* pDone);
    PTestFuncReturnType DoLtOp(CStream* pStream, int index, CSyncMark** pp,
                               ScanDirectionType direction, int* pDone);
    PTestFuncReturnType DoLeOp(CStream* pStream, int index, CSyncMark** pp,
                               ScanDirectionType direction, int* pDone);
    PTestFuncReturnType DoGtOp(CStream* pStream, int index, CSyncMark** pp,
                               ScanDirectionType direction, int* pDone);
    PTestFuncReturnType DoGeOp(CStream* pStream, int index, CSyncMark** pp,
                               ScanDirectionType direction, int* pDone);
    PTestFuncReturnType DoAngleBrktOp(CStream* pStream, int index, CSyncMark** pp,
                                      ScanDirectionType direction, int* pDone);
    PTestFuncReturnType DoTokOp(CStream* pStream, int index, CSyncMark** pp,
                                ScanDirectionType direction, int* pDone);
    PTestFuncReturnType DoPtrOp(CStream* pStream, int index, CSyncMark** pp,
                                ScanDirectionType direction, int* pDone);
    PTestFuncReturnType DoAssignPtrOp(CStream* pStream, int index, CSyncMark** pp,
                                      ScanDirectionType direction, int* pDone);
    PTestFuncReturnType DoAssignTokOp(CStream* pStream, int index, CSyncMark** pp,
                                      ScanDirectionType direction, int* pDone);
    PTestFuncReturnType DoNameEqOp(CStream* pStream, int index, CSyncMark** pp,
                                   ScanDirectionType direction, int* pDone);
    PTestFuncReturnType DoRightContextOp(CStream* pStream, int index, CSyncMark** pp,
                                         ScanDirectionType direction, int* pDone);
    PTestFuncReturnType DoLeftContextOp(CStream* pStream, int index, CSyncMark** pp,
                                        ScanDirectionType direction, int* pDone);
    PTestFuncReturnType DoMoveRightOp(CStream* pStream, int index, CSyncMark** pp,
                                      ScanDirectionType direction, int* pDone);
    PTestFuncReturnType DoMoveLeftOp(CStream* pStream, int index, CSyncMark** pp,
                                     ScanDirectionType direction, int* pDone);
    PTestFuncReturnType DoTimeMoveRightOp(CStream* pStream, int index, CSyncMark** pp,
                                          ScanDirectionType direction, int* pDone);
    PTestFuncReturnType DoTimeMoveLeftOp(CStream* pStream, int index, CSyncMark** pp,
                                         ScanDirectionType direction, int* pDone);
    PTestFuncReturnType DoAdjacencyTestOp(CStream* pStream, int index, CSyncMark** pp,
                                          ScanDirectionType direction, int* pDone);
    PTestFuncReturnType DoSyncTestOp(CStream* pStream, int index, CSyncMark** pp,
                                     ScanDirectionType direction, int* pDone);
    PTestFuncReturnType DoParentPtrOp(CStream* pStream, int index, CSyncMark** pp,
                                      ScanDirectionType direction, int* pDone);
    PTestFuncReturnType DoTokenValOp(CStream* pStream, int index, CSyncMark** pp,
                                     ScanDirectionType direction, int* pDone);

    CPlexa* m_pPlexa;
    CVarList* m_pVarList;
    unsigned char const (*m_pProgram)[5];
    CPlexaTestBackupControl m_backup;
    int m_nBase;
    CSyncMark* m_pAdvanceMark;

    unsigned char const (*m_pHeader)[5];  // the test's, in the program
    CPlexaTestObserver* m_pObserver;
    std::uint32_t m_nExecuted;
    bool m_bEnded;  // the test is false, whatever its operators still make of it
    bool m_bRunning;
    std::uintptr_t m_nStackLimit;
};

#endif
