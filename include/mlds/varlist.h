// Rule variables: names that a rule binds to sync marks and tokens.
#ifndef MLDS_VARLIST_H
#define MLDS_VARLIST_H

#include "mlds/export.h"
#include "mlds/token.h"

/// What a variable is bound to.
enum VarType : int {
    vtSyncMarkPtr = 0,     ///< a CSyncMark* of the host
    vtSyncMarkPtrPtr = 1,  ///< the same, declared through AddSyncMarkPtrPtr
    vtTokenPtr = 2         ///< a CToken* of the host
};

/// The variables of one rule. A test works on duplicates of their values; when it holds, they are
/// written back to the host's variables. Lists nest: a new list goes on top of its container's
/// stack and inherits the fences of the list below.
///
/// The host's variables and the names must outlive their list. A list may outlive its container
/// and then does nothing any more.
class MLDS_API CVarList {
public:
    /// An empty list, pushed onto the container's stack (unless the stack is full).
    explicit CVarList(CPlexa* pPlexa);
    CVarList(const CVarList&) = delete;
    /// Memberwise: names, bound variables and duplicate tokens are shared.
    CVarList& operator=(const CVarList& other);
    /// Takes the list off the stack; the fences of the new top become the live ones.
    ~CVarList();

    /// Adds a variable. Nothing happens beyond 50 variables or when an argument is null.
    void AddSyncMarkPtr(const char* name, CSyncMark** pp);
    void AddSyncMarkPtrPtr(const char* name, CSyncMark** pp);
    void AddTokenPtr(const char* name, CToken** pp);

    /// The index of the first variable of that name, or -1.
    int GetVarIndex(const char* name);
    /// The host's variable that is bound to the name or index; null if there is none. Reported to
    /// the viewer as a use of the variable.
    CStreamObj** GetVarPtr(const char* name);
    CStreamObj** GetVarPtr(int i);
    /// The name of variable i; null if there is none. Reported as a use.
    char* GetVarName(int i);
    /// The duplicate of variable i; null if there is none. A token stays the list's own.
    CStreamObj* GetDupVarPtr(int i) { return HasVar(i) ? m_pDup[i] : nullptr; }
    /// The type of a variable; -1 if there is none.
    VarType GetVarType(int i);
    VarType GetVarType(const char* name);
    int GetNumVars();
    /// True if the duplicate of variable i has been set during the current test.
    bool IsDirty(int i);

    /// Set and clear the duplicate of a sync mark variable.
    void SetSyncMarkPtr(int i, CSyncMark* p);
    void UnsetSyncMarkPtr(int i);
    /// Set the duplicate of a token variable to a private copy of `p`, and clear it.
    void SetTokenPtr(int i, CToken* p);
    void UnsetTokenPtr(int i);
    /// Prepares for a test: nothing dirty, sync mark duplicates taken from the host's variables,
    /// token duplicates gone.
    void ReSetForUse();
    /// Ends a test: with `bAssign`, dirty duplicates are written to the host's variables (tokens
    /// value by value into the bound token); they are dropped either way and stay dirty.
    void DoAssignmentsAndClear(bool bAssign);
    /// Reports every variable under the given message code.
    void SendOutThisVarList(int code);

    /// Fences the streams named (separated by commas and spaces), given or numbered (-1: none),
    /// and no others.
    void SetFence(const char* names);
    void SetFence(CStream* s1, CStream* s2, CStream* s3, CStream* s4, CStream* s5);
    void SetFence(int i1, int i2, int i3, int i4, int i5);
    /// True if this list fences the stream.
    bool GetFenceState(int streamIndex);

private:
    friend struct mlds::Internals;
    friend struct mlds::ListAccess;

    static constexpr int kMaxVars = 50;
    static constexpr int kMaxStreams = 50;

    MLDS_LOCAL void AddVar(const char* name, CStreamObj** pp, VarType type);
    MLDS_LOCAL void Enlist();
    MLDS_LOCAL void Delist();
    MLDS_LOCAL void ReportVar(int code, int i);
    bool HasVar(int i) const { return i >= 0 && i < m_nVars; }
    MLDS_LOCAL bool HasVarOfKind(int i, bool bToken) const;
    MLDS_LOCAL void DropDuplicate(int i);
    MLDS_LOCAL void ClearFences();
    MLDS_LOCAL void FenceStream(int streamIndex);

    CPlexa* m_pPlexa;
    CStreamObj** m_ppBound[kMaxVars];
    CStreamObj* m_pDup[kMaxVars];
    const char* m_szNames[kMaxVars];
    VarType m_types[kMaxVars];
    bool m_bDirty[kMaxVars];
    int m_nVars;
    bool m_bFences[kMaxStreams];

    CVarList* m_pNextList;  // the lists of one container, so that it can let go of them
    CVarList* m_pPrevList;
};

/// Guards a sync mark pointer that a function advances tentatively: unless the result flag is true
/// at the end of the scope, the pointer gets its old value back.
class MLDS_API CRetValResetObj {
public:
    /// Guards *pp, which must live as long as this object.
    explicit CRetValResetObj(CSyncMark** pp);
    CRetValResetObj(const CRetValResetObj&) = default;
    CRetValResetObj& operator=(const CRetValResetObj& other) = default;
    ~CRetValResetObj();

    /// The outcome of the work; true at first.
    bool m_bResult;

private:
    CSyncMark** m_ppTarget;
    CSyncMark* m_pSaved;
};

#endif
