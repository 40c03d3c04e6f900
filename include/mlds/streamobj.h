// Stream objects: what tokens and sync marks have in common.
#ifndef MLDS_STREAMOBJ_H
#define MLDS_STREAMOBJ_H

#include <cstddef>
#include <cstdint>
#include <new>

#include "mlds/export.h"

/// The kind of a stream object. Other values match no object.
enum ObjectType : int {
    otToken = 0,    ///< the object is a CToken
    otSyncMark = 1  ///< the object is a CSyncMark
};

/// The direction of a walk. Every value but sdRight acts as sdLeft.
enum ScanDirectionType : int {
    sdLeft = 0,  ///< towards the start of the stream
    sdRight = 1  ///< towards the end of the stream
};

/// The interface of every stream object.
class MLDS_API CStreamObjBase {
public:
    /// The stream that the object was made for. Never changes.
    virtual CStream* GetStream() = 0;
    /// True if the object is of the given kind.
    virtual bool GetObjectType(ObjectType type) = 0;
    virtual ObjectType GetObjectType() = 0;

    /// The neighbour in `direction`; null at the end of the chain. With `bFenceCheck`, also null
    /// where this object is a sync mark that a fence forbids to leave.
    virtual CStreamObj* GetAdjacentStreamObj(ScanDirectionType direction, bool bFenceCheck) = 0;
    /// The nearest object of kind `type` in `direction`; null when the chain ends first. With
    /// `bFenceCheck`, also null where a fenced sync mark would have to be left on the way; the
    /// object returned is not checked itself.
    virtual CStreamObj* GetAdjacentStreamObj(ScanDirectionType direction, ObjectType type,
                                             bool bFenceCheck) = 0;
    /// The nearest object of kind `type` in `direction`, fences ignored; null if there is none.
    virtual CStreamObj* GetAdjacentStreamObj(ScanDirectionType direction, ObjectType type) = 0;
    /// The neighbour in `direction`, fences ignored.
    virtual CStreamObj* GetAdjacentStreamObj(ScanDirectionType direction) = 0;

    /// The right link. It stays as it was when the object leaves its stream, and is then not to be
    /// followed further than the caller knows the neighbour to be alive.
    virtual CStreamObj* GetNextStreamObj() = 0;
    /// The left link, under the same rule.
    virtual CStreamObj* GetPrevStreamObj() = 0;

    /// The nearest token or sync mark to the right or left; null when the chain ends first. From an
    /// object that was taken out of its stream the scan steps along its links of that moment, so
    /// that a loop may remove an object and go on from it; null once anything of its stream has
    /// been destroyed since.
    virtual CToken* GetNextToken() = 0;
    virtual CToken* GetPrevToken() = 0;
    virtual CSyncMark* GetNextSyncMark() = 0;
    virtual CSyncMark* GetPrevSyncMark() = 0;

    /// The position key: strictly increasing from left to right within a stream, 0 at its start
    /// sentinel and 0xFFFFFFFF at its end sentinel. A removed object keeps its last value.
    virtual unsigned int GetOrderIndex() = 0;

protected:
    CStreamObjBase() = default;
    CStreamObjBase(const CStreamObjBase&) = default;
    CStreamObjBase& operator=(const CStreamObjBase&) = default;
    ~CStreamObjBase() = default;
};

/// A link in the chain of one stream: a token or a sync mark.
class MLDS_API CStreamObj : public CStreamObjBase {
public:
    CStream* GetStream() override { return m_pStream; }
    bool GetObjectType(ObjectType type) override { return m_type == type; }
    ObjectType GetObjectType() override { return m_type; }
    CStreamObj* GetAdjacentStreamObj(ScanDirectionType direction, bool bFenceCheck) override;
    CStreamObj* GetAdjacentStreamObj(ScanDirectionType direction, ObjectType type,
                                     bool bFenceCheck) override;
    CStreamObj* GetAdjacentStreamObj(ScanDirectionType direction, ObjectType type) override;
    CStreamObj* GetAdjacentStreamObj(ScanDirectionType direction) override {
        return direction == sdRight ? m_pNext : m_pPrev;
    }
    CStreamObj* GetNextStreamObj() override { return m_pNext; }
    CStreamObj* GetPrevStreamObj() override { return m_pPrev; }
    CToken* GetNextToken() override;
    CToken* GetPrevToken() override;
    CSyncMark* GetNextSyncMark() override;
    CSyncMark* GetPrevSyncMark() override;
    unsigned int GetOrderIndex() override;

protected:
    explicit CStreamObj(CStream* pStream);
    /// For a stream that may be gone already.
    CStreamObj(CStream* pStream, int streamIndex);
    /// A copy has the same members and is itself in no stream. An object that is in a stream keeps
    /// its place when it is assigned to.
    CStreamObj(const CStreamObj& other);
    CStreamObj& operator=(const CStreamObj& other);
    virtual ~CStreamObj();

public:
    /// Links this object between two neighbours and gives it an order index. Changes no counter
    /// and reports nothing. Does nothing if this object is already in a stream, or if the two are
    /// null or not neighbours of each other in a stream or in a chain that was cut out of one.
    void LinkBetween(CStreamObj* pLeft, CStreamObj* pRight);
    /// Takes this object out of its chain. Its own links stay as they were. Changes no counter and
    /// reports nothing. Does nothing on an object that is in no chain, and on sentinels.
    void UnLink();
    /// True if both objects belong to the same stream and this one's order index is the lower.
    bool LeftOf(CStreamObj* p);
    /// True if both objects belong to the same stream and this one's order index is the higher.
    bool RightOf(CStreamObj* p);

    /// Plain `new` gives null when memory runs out, and throws nothing; so does
    /// `new (std::nothrow)`. There is no form that takes a place: the library frees what it owns.
    static void* operator new(std::size_t size) noexcept;
    static void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
        return operator new(size);
    }
    static void operator delete(void* p, std::size_t size) noexcept;

private:
    friend struct mlds::Internals;
    friend struct mlds::PlaceAccess;
    friend class mlds::OrderNumbering;
    friend struct mlds::HandleAccess;

    static constexpr std::uint8_t kInChain = 17;  // the bits of m_nState that say so

    CStreamObj* Nearest(ObjectType type, bool bRight) {
        if ((m_nState & kInChain) == 0) return NearestWhileStale(type, bRight);
        CStreamObj* p = bRight ? m_pNext : m_pPrev;
        while (p != nullptr && p->m_type != type) p = bRight ? p->m_pNext : p->m_pPrev;
        return p;
    }
    CStreamObj* NearestWhileStale(ObjectType type, bool bRight);  // exported: inline ones call it

    CStream* m_pStream;
    CStreamObj* m_pNext;
    CStreamObj* m_pPrev;

protected:
    ObjectType m_type;

private:
    std::uint32_t m_nOrderIndex;

protected:
    char m_cDisplay;  // '|' or a token's first value; copied, and read by nobody

private:
    std::uint8_t m_nState;        // see mlds::ObjectState
    std::uint8_t m_nStreamIndex;  // kept here, as the object may outlive its stream
    bool m_bHasHandle;            // a viewer knows this object
    std::uint32_t m_nEpoch;       // of the order index while linked, else see src/stream/absence.h
};

#endif
