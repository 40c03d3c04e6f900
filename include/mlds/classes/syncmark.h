// Sync marks: the boundaries of a stream, and what ties streams together.
#ifndef MLDS_CLASSES_SYNCMARK_H
#define MLDS_CLASSES_SYNCMARK_H

#include "mlds/streamobj.h"

/// The interface that sync marks add to stream objects.
class MLDS_API CSyncMarkBase : public CStreamObj {
public:
    /// Moves over `n` tokens and stops just short of the next one: the object in front of token
    /// n + 1 in the direction. This mark for a negative n; null when there are too few tokens.
    virtual CSyncMark* UptoTokens(ScanDirectionType direction, int n) = 0;
    /// Moves over `n` tokens and stops right after the last. This mark for n < 1; null when there
    /// are too few tokens or the last touches another token.
    virtual CSyncMark* OverTokens(ScanDirectionType direction, int n) = 0;
    /// The next sync mark in the direction, tokens stepped over; null at the end of the chain.
    virtual CSyncMark* BySyncMarks(ScanDirectionType direction) = 0;
    /// The mark of the given stream that is synchronous with this one, this mark itself for its
    /// own stream, or null.
    virtual CSyncMark* GetCorrespondingSyncMark(CStream* pStream) = 0;
    virtual CSyncMark* GetCorrespondingSyncMark(int streamIndex) = 0;

protected:
    explicit CSyncMarkBase(CStream* pStream) : CStreamObj(pStream) {}
    CSyncMarkBase(const CSyncMarkBase&) = default;
    CSyncMarkBase& operator=(const CSyncMarkBase&) = default;
    ~CSyncMarkBase() override = default;
};

/// A boundary of one stream. Synchronous marks of different streams form a group that stands for
/// one instant across the tiers; a group has at most one reachable member per stream.
class MLDS_API CSyncMark final : public CSyncMarkBase {
public:
    /// A mark for `pStream`, linked nowhere and synchronous with nothing.
    explicit CSyncMark(CStream* pStream);
    /// A copy points to the same group without being listed in it, and is in no stream. Assigning
    /// to a mark that is in a stream does nothing.
    CSyncMark(const CSyncMark& other);
    CSyncMark& operator=(const CSyncMark& other);

    CSyncMark* UptoTokens(ScanDirectionType direction, int n) override;
    CSyncMark* OverTokens(ScanDirectionType direction, int n) override;
    CSyncMark* BySyncMarks(ScanDirectionType direction) override;
    CSyncMark* GetCorrespondingSyncMark(CStream* pStream) override;
    CSyncMark* GetCorrespondingSyncMark(int streamIndex) override;

    /// Joins the groups of the two marks. False, and nothing changed, for null, for another mark
    /// of this stream, for a mark of another container, and when both groups have a member in the
    /// same stream. A mark that is alone takes the place of the group's member in its stream: the
    /// member displaced is no longer reached from the group.
    bool SetToSynchronous(CSyncMark* pOther);
    /// With `bReplace`, first replaces pOther, a linked mark, by a fresh mark at the same place
    /// (pOther is destroyed), and joins that one to this mark's group. A sentinel is not replaced:
    /// the fresh mark goes beside it.
    bool SetToSynchronous(CSyncMark* pOther, bool bReplace);

    /// True if this mark is in a group.
    bool IsSynchronous() { return m_ppSyncList != nullptr; }
    /// True if this mark's group has a member in the stream.
    bool IsSynchronous(int streamIndex);
    bool IsSynchronous(CStream* pStream);
    /// True if this mark's group holds pOther, and for this mark itself.
    bool IsSynchronous(CSyncMark* pOther);
    /// True if this mark's group has a member in a fenced stream, as far as the streams that
    /// existed when this mark was made.
    bool IsSynchronousWithFence();

    /// Visited stamps of searches: true if the mark carries `n`; otherwise stores it.
    bool TestSearchNumber(unsigned int n);
    void TouchSearchNumber(unsigned int n);

private:
    friend struct mlds::Internals;
    friend struct mlds::SyncTable;

    ~CSyncMark() override;
    MLDS_LOCAL void RemoveFromSyncList();
    MLDS_LOCAL void LeaveEndedGroup();
    MLDS_LOCAL bool TieTo(CSyncMark* pOther, mlds::SyncTable*& pSpare);

    CSyncMark** m_ppSyncList;
    std::uint32_t m_nSearchNumber;
    int m_nNumStreams;
};

#endif
