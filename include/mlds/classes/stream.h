// Streams: the tiers of the structure.
#ifndef MLDS_CLASSES_STREAM_H
#define MLDS_CLASSES_STREAM_H

#include "mlds/field.h"
#include "mlds/streamobj.h"

/// Which of the two marks around a section go away with it.
enum BufferSyncMarkInsertionType : int {
    bsmDeleteBoth = 0,   ///< both (CStream::ExciseSection: neither)
    bsmDeleteLeft = 1,   ///< the left one
    bsmDeleteRight = 2,  ///< the right one
    bsmKeepBoth = 3      ///< neither
};

/// Where CStream::InsertStreamObj puts an object.
enum InsertWhereType : int {
    iwPlaced = 1,   ///< nowhere: it is where it belongs, and only counted
    iwRightOf = 2,  ///< immediately right of the other one
    iwLeftOf = 3    ///< immediately left of the other one
};

/// The interface of a stream.
class MLDS_API CStreamBase {
public:
    virtual char* GetStreamName() = 0;
    /// The stream's place in its container, from 0.
    virtual int GetStreamIndex() = 0;
    virtual CPlexa* pGetStreamPlexa() = 0;
    /// The two sentinels, owned by the stream and never removed.
    virtual CSyncMark* pGetFirstStreamObj() = 0;
    virtual CSyncMark* pGetLastStreamObj() = 0;

    /// Links an object between two neighbours; either may be null and is then the neighbour of the
    /// other. The stream owns the object from then on. False, with nothing changed and the object
    /// still the caller's, if the object is null or already linked, if the two are not neighbours,
    /// and for a token that would touch a token or a sentinel.
    virtual bool InsertStreamObj(CStreamObj* pToBeInserted, CStreamObj* pStreamObjLeft,
                                 CStreamObj* pStreamObjRight) = 0;
    /// Links an object next to `pAt`, or counts one that is already placed; `InsertWhere` is one of
    /// InsertWhereType, and others are refused. Ownership and failure as above; a token next to a
    /// token is not refused here.
    virtual bool InsertStreamObj(CStreamObj* pStreamObj, int InsertWhere, CStreamObj* pAt) = 0;
    /// Takes an object out of the stream. With `bDelete` it is destroyed and the result is null;
    /// otherwise it leaves its synchrony group and is returned, the caller's from then on. Null,
    /// with nothing changed, for a sentinel, null or an object that is in no stream.
    virtual CStreamObj* RemoveStreamObj(CStreamObj* p, bool bDelete) = 0;

    // Sections lie between two marks, which may be of any streams with a counterpart here.

    /// Takes the marks between two marks out of their groups. Nothing happens if there is no such
    /// section.
    virtual void DeSyncSection(CSyncMark* pFrom, CSyncMark* pTo) = 0;
    /// Cuts out what lies between two marks, its marks taken out of their groups, as a chain from
    /// *ppFirst to *ppLast: the caller's, to be put back or discarded object by object. Of `type`,
    /// bsmDeleteLeft and bsmDeleteRight delete that mark too. The counters go down by what the
    /// chain counts for, its last object always as a mark; they go up by one where it begins or
    /// ends with a token of another stream. False, with nothing changed, for null, an empty section
    /// and bounds that are not in order.
    virtual bool ExciseSection(CSyncMark* pFrom, CSyncMark* pTo, CStreamObj** ppFirst,
                               CStreamObj** ppLast, BufferSyncMarkInsertionType type) = 0;
    /// Links a chain that was cut out of this stream, a run of one, or a single object, between two
    /// neighbours; the stream owns it again. One of the bounds may be null: the other's neighbour
    /// is meant, with a new mark between where tokens would touch. The bounds are replaced by their
    /// counterparts here, also by null. False if what is given is no such chain, if the bounds are
    /// no neighbours, and where tokens would touch; the chain is then still the caller's. A token
    /// may come to stand next to a sentinel, unlike by insertions.
    virtual bool InsertSection(CStreamObj* pFirst, CStreamObj* pLast, CSyncMark** ppLeft,
                               CSyncMark** ppRight) = 0;

    /// A field by name or index; null if there is none.
    virtual CField* GetField(const char* name) = 0;
    virtual CField* GetField(int i) = 0;
    virtual int GetNumFields() = 0;
    /// The index of the first field of that name, or -1.
    virtual int GetFieldIndex(const char* name) = 0;
    /// A token for this stream, in no stream yet and the caller's. Null for a null name and when
    /// memory runs out.
    virtual CToken* CreateToken(const char* name) = 0;
    virtual CToken* CreateToken() = 0;

    /// The number of tokens from `from` to `to`, null meaning the ends of the stream. With
    /// `bProject` the bounds are first carried into this stream. -1 if a bound does not fit.
    virtual int GetNumTokens(CSyncMark* from, CSyncMark* to, bool bProject) = 0;
    virtual int GetNumTokens() = 0;
    /// The number of sync marks from `from` to `to`, the closing bound always counted as one. -1
    /// if a bound does not fit or `from` lies right of `to`.
    virtual int GetNumSyncMarks(CSyncMark* from, CSyncMark* to) = 0;
    /// The names of the tokens from `from` to `to`, null meaning the ends of the stream, with
    /// "|" for every sync mark if wanted. The text belongs to the stream and is valid until the
    /// next call on it; empty if a bound has no counterpart in this stream.
    virtual char* GetStr(CSyncMark* from, CSyncMark* to, bool bWithSyncMarks) = 0;

protected:
    ~CStreamBase() = default;
};

/// One tier: a chain of tokens and sync marks between two sentinels, and the fields of its tokens.
/// Streams are made and destroyed by their container.
class MLDS_API CStream final : public CStreamBase {
public:
    /// A copy shares chain, fields and text with its source and must not outlive it. Assigning to a
    /// stream of a container does nothing.
    CStream(const CStream& other);
    CStream& operator=(const CStream& other);
    /// The container destroys its streams; nobody else may.
    ~CStream();

    char* GetStreamName() override;
    int GetStreamIndex() override { return m_nIndex; }
    CPlexa* pGetStreamPlexa() override;
    CSyncMark* pGetFirstStreamObj() override { return m_pFirst; }
    CSyncMark* pGetLastStreamObj() override { return m_pLast; }
    bool InsertStreamObj(CStreamObj* pToBeInserted, CStreamObj* pStreamObjLeft,
                         CStreamObj* pStreamObjRight) override;
    bool InsertStreamObj(CStreamObj* pStreamObj, int InsertWhere, CStreamObj* pAt) override;
    CStreamObj* RemoveStreamObj(CStreamObj* p, bool bDelete) override;
    void DeSyncSection(CSyncMark* pFrom, CSyncMark* pTo) override;
    bool ExciseSection(CSyncMark* pFrom, CSyncMark* pTo, CStreamObj** ppFirst, CStreamObj** ppLast,
                       BufferSyncMarkInsertionType type) override;
    bool InsertSection(CStreamObj* pFirst, CStreamObj* pLast, CSyncMark** ppLeft,
                       CSyncMark** ppRight) override;
    CField* GetField(const char* name) override;
    CField* GetField(int i) override;
    int GetNumFields() override;
    int GetFieldIndex(const char* name) override;
    CToken* CreateToken(const char* name) override;
    CToken* CreateToken() override;
    int GetNumTokens(CSyncMark* from, CSyncMark* to, bool bProject) override;
    int GetNumTokens() override;
    int GetNumSyncMarks(CSyncMark* from, CSyncMark* to) override;
    char* GetStr(CSyncMark* from, CSyncMark* to, bool bWithSyncMarks) override;
    /// True if the tokens of two sections have equal field values; marks between them do not
    /// matter. Null is the end of the stream on that side; false if both bounds of a section are
    /// null. A second section behind the last token of the stream equals any that is not empty.
    virtual bool CompareSection(CSyncMark* pFrom1, CSyncMark* pTo1, CSyncMark* pFrom2,
                                CSyncMark* pTo2);
    virtual int GetNumSyncMarks();

    /// Removes and destroys every object between the sentinels.
    void StreamReset();
    /// Names longer than 50 characters are ignored.
    void SetStreamName(const char* name);
    /// Adds a field, owned by the stream. Null for a null name, beyond 50 fields, and when memory
    /// runs out. Tokens that exist already do not get the new field.
    CField* AddField(const char* name);
    /// Gives the objects of the stream evenly spaced order indices.
    void Renumber();

    /// Destroys an object that is in no stream: what RemoveStreamObj handed out, a refused token or
    /// a mark never linked. Null and linked objects are left alone.
    static void DiscardStreamObj(CStreamObj* p);

private:
    friend struct mlds::Internals;
    friend struct mlds::PlaceAccess;
    friend struct mlds::ListAccess;

    static constexpr int kMaxFields = 50;
    static constexpr int kMaxName = 50;

    MLDS_LOCAL CStream(CPlexa* pPlexa, int index);
    MLDS_LOCAL void Release();
    MLDS_LOCAL void Abandon();
    MLDS_LOCAL CStream* Owner();
    MLDS_LOCAL bool GrowText(std::size_t length, std::size_t needed);

    // These stand in the order that hosts are built with; what came later is at the end.
    int m_nIndex;
    CPlexa* m_pPlexa;
    CSyncMark* m_pFirst;
    CSyncMark* m_pLast;
    char m_szName[kMaxName + 1];
    char* m_pText;
    char m_szSyncMark[2];
    int m_nTextCapacity;
    int m_nFields;
    int m_nTokens;
    int m_nSyncMarks;
    CField* m_pFields[kMaxFields];

public:
    /// When true, insertions into this stream are not reported to the viewer.
    bool m_bQuiet;

private:
    bool m_bFence;

    bool m_bOwner;                       // what the pointers hold is this object's own
    mlds::OrderNumbering* m_pNumbering;  // owned like the rest
    std::uint32_t m_nDestroyed;          // objects that were in a chain and are gone
    std::uint32_t m_nAbsent;             // objects that were in a chain and live outside of any
};

#endif
