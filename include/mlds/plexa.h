// The container: all streams of an utterance and what works across them.
#ifndef MLDS_PLEXA_H
#define MLDS_PLEXA_H

#include <cstdint>

#include "mlds/messagesocket.h"
#include "mlds/stream.h"

/// Where the five-argument CPlexa::InsertStreamObject puts an object.
enum InsertionLocationType : int {
    ilAtLeft = 0,     ///< immediately right of the left mark
    ilAtRight = 1,    ///< immediately left of the right mark
    ilSplitToken = 2  ///< into the token at the left mark, which is split in two
};

/// The interface of the container.
///
/// Marks given to these operations may belong to any stream; where an operation works in another
/// stream, it uses the mark's counterpart there.
class MLDS_API CPlexaBase {
public:
    /// A stream by name (the first of that name) or index; null if there is none.
    virtual CStream* pStream(const char* name) = 0;
    virtual CStream* pStream(int index) = 0;

    /// Replaces what lies between two marks by the items of a text in the string notation (see
    /// docs/notation.md). False, with nothing changed, if the text is malformed; false if a mark
    /// cannot be carried into the stream (the other one may have been); false, with what lay right
    /// of pLeft removed, if pRight does not lie right of pLeft; false, with the display still
    /// delayed, if the stream refuses a plain token; false when memory runs out.
    virtual bool InsertString(CStream* pStream, const char* text, CSyncMark* pLeft,
                              CSyncMark* pRight) = 0;
    /// The same; the first characters of the text choose the stream. True, with nothing done, if
    /// they name an unknown stream.
    virtual bool InsertString(const char* text, CSyncMark* pLeft, CSyncMark* pRight) = 0;

    /// Replaces what lies between two marks by a list of objects; tokens are kept apart by new
    /// sync marks. Objects that were placed belong to the stream, others stay the caller's. With
    /// the same mark twice, the list goes right of it and nothing is removed.
    virtual bool InsertStreamObjects(CStream* pStream, CSyncMark* pLeft, CSyncMark* pRight,
                                     CStreamObj** objs, int count) = 0;
    /// Replaces what lies between two marks by one object. Either mark may be null: the object then
    /// goes next to the other one. The object belongs to the stream once it is linked there, which
    /// true does not promise.
    virtual bool InsertStreamObject(CStream* pStream, CSyncMark* pLeft, CSyncMark* pRight,
                                    CStreamObj* pObj) = 0;
    /// Removes what lies between two marks, and the marks themselves as `type` says. False, with
    /// nothing changed, if a mark has no counterpart or the left is not left of the right.
    virtual bool DeleteStreamItems(CStream* pStream, CSyncMark* pLeft, CSyncMark* pRight,
                                   BufferSyncMarkInsertionType type) = 0;
    /// Removes the mark's counterpart in the stream. False if there is none, if two tokens would
    /// touch, and for a sentinel.
    virtual bool DeleteStreamSyncMark(CStream* pStream, CSyncMark* pSyncMark) = 0;

    /// Projects a mark into every listed stream but its own; null entries are skipped. Returns the
    /// last projection, or null at the first that fails. The direction has no influence.
    virtual CSyncMark* ProjectSyncMark(CStream** ppStreams, int count, CSyncMark* pSyncMark,
                                       CSyncMark* pSyncMarkDisambiguator,
                                       ScanDirectionType direction) = 0;
    /// The mark of the stream at the place of `pSyncMark`, made and tied to it if need be. Null,
    /// and an error in the log, if tokens make the place ambiguous. A disambiguator, a mark on one
    /// side of it, settles that: the new mark goes immediately right of the counterpart of one on
    /// the left, or immediately left of the counterpart of one on the right.
    virtual CSyncMark* ProjectSyncMark(CStream* pTargetStream, CSyncMark* pSyncMark,
                                       CSyncMark* pSyncMarkDisambiguator) = 0;
    virtual CSyncMark* ProjectSyncMark(const char* streamName, CSyncMark* pSyncMark,
                                       CSyncMark* pSyncMarkDisambiguator) = 0;

    /// True if pTo lies at pFrom or beyond it in the direction.
    virtual bool Context(CSyncMark* pFrom, CSyncMark* pTo, ScanDirectionType direction) = 0;
    /// The nearest mark of the stream at or beyond a mark in the direction; null if none is found.
    virtual CSyncMark* Context(const char* streamName, CSyncMark* pSyncMark,
                               ScanDirectionType direction) = 0;
    virtual CSyncMark* Context(int streamIndex, CSyncMark* pSyncMark,
                               ScanDirectionType direction) = 0;
    virtual CSyncMark* Context(CStream* pStream, CSyncMark* pSyncMark,
                               ScanDirectionType direction) = 0;
    /// Some mark of the stream that can be reached from the mark in the direction, not always the
    /// nearest; null if none is found.
    virtual CSyncMark* SubContext(CStream* pStream, CSyncMark* pSyncMark,
                                  ScanDirectionType direction) = 0;
    /// The marks around the next token of pFromStream (the mark's own stream if null) in the
    /// direction, as marks of pToStream (pFromStream if null); null where one has no counterpart
    /// there. False, with both outputs null, if there is no such token.
    virtual bool BracketToken(CSyncMark* pSyncMark, ScanDirectionType direction, CSyncMark** ppLeft,
                              CSyncMark** ppRight, CStream* pFromStream, CStream* pToStream) = 0;

    /// Connects to the viewer (CMessageSocket says where it is looked for) and reports the whole
    /// structure to it; from then on every change is reported, and waits for the viewer's
    /// acknowledgement. False if there is no viewer, and on a copy of a container. While a viewer
    /// is connected, it is told everything once more. A link that is lost ends by itself, also
    /// while it begins: the container goes on without, and may connect again.
    virtual bool StartMessageEngine() = 0;
    /// Says goodbye and disconnects.
    virtual void StopMessageEngine() = 0;
    /// Brackets a bulk edit: while true, the viewer need not redraw. Brackets do not nest.
    virtual void DelayMessageDisplay(bool bDelay) = 0;

    /// The abort flag, set by the host alone.
    virtual bool isSynthesisAbort() = 0;

protected:
    ~CPlexaBase() = default;
};

/// The container of up to 50 streams.
///
/// A container, with everything in it, is used by one thread at a time.
class MLDS_API CPlexa final : public CPlexaBase {
public:
    /// An empty container. The engine is stored for getEngine and may be null.
    explicit CPlexa(CEngine* pEngine);
    /// A copy shares everything with its source and must not outlive it. Assigning to a container
    /// that is no copy does nothing.
    CPlexa(const CPlexa& other);
    CPlexa& operator=(const CPlexa& other);
    /// Destroys all streams with their objects and fields.
    ~CPlexa();

    CStream* pStream(const char* name) override;
    CStream* pStream(int index) override;
    bool InsertString(CStream* pStream, const char* text, CSyncMark* pLeft,
                      CSyncMark* pRight) override;
    bool InsertString(const char* text, CSyncMark* pLeft, CSyncMark* pRight) override;
    bool InsertStreamObjects(CStream* pStream, CSyncMark* pLeft, CSyncMark* pRight,
                             CStreamObj** objs, int count) override;
    bool InsertStreamObject(CStream* pStream, CSyncMark* pLeft, CSyncMark* pRight,
                            CStreamObj* pObj) override;
    bool DeleteStreamItems(CStream* pStream, CSyncMark* pLeft, CSyncMark* pRight,
                           BufferSyncMarkInsertionType type) override;
    bool DeleteStreamSyncMark(CStream* pStream, CSyncMark* pSyncMark) override;
    CSyncMark* ProjectSyncMark(CStream** ppStreams, int count, CSyncMark* pSyncMark,
                               CSyncMark* pSyncMarkDisambiguator,
                               ScanDirectionType direction) override;
    CSyncMark* ProjectSyncMark(CStream* pTargetStream, CSyncMark* pSyncMark,
                               CSyncMark* pSyncMarkDisambiguator) override;
    CSyncMark* ProjectSyncMark(const char* streamName, CSyncMark* pSyncMark,
                               CSyncMark* pSyncMarkDisambiguator) override;
    bool Context(CSyncMark* pFrom, CSyncMark* pTo, ScanDirectionType direction) override;
    CSyncMark* Context(const char* streamName, CSyncMark* pSyncMark,
                       ScanDirectionType direction) override;
    CSyncMark* Context(int streamIndex, CSyncMark* pSyncMark, ScanDirectionType direction) override;
    CSyncMark* Context(CStream* pStream, CSyncMark* pSyncMark,
                       ScanDirectionType direction) override;
    CSyncMark* SubContext(CStream* pStream, CSyncMark* pSyncMark,
                          ScanDirectionType direction) override;
    bool BracketToken(CSyncMark* pSyncMark, ScanDirectionType direction, CSyncMark** ppLeft,
                      CSyncMark** ppRight, CStream* pFromStream, CStream* pToStream) override;
    bool StartMessageEngine() override;
    void StopMessageEngine() override;
    void DelayMessageDisplay(bool bDelay) override;
    bool isSynthesisAbort() override;

    /// Replaces what lies between two marks by one token per character of the text. With the same
    /// mark twice or only one mark, nothing is removed and the tokens go next to it. Characters
    /// that have no place, as between the sentinels themselves, are left out.
    virtual bool InsertLiteralString(CStream* pStream, const char* text, CSyncMark* pLeft,
                                     CSyncMark* pRight);
    /// Puts an object next to one of two marks, removing nothing. A counterpart that is missing on
    /// the far side is made. True does not promise that the object was placed.
    virtual bool InsertStreamObject(CStream* pStream, CSyncMark* pLeft, CSyncMark* pRight,
                                    CStreamObj* pObj, InsertionLocationType where);
    /// Removes, between two marks of the stream, every token named like pToken, with the mark on
    /// its left.
    virtual bool StripOutTokens(CStream* pStream, CSyncMark* pLeft, CSyncMark* pRight,
                                CToken* pToken);
    virtual CEngine* getEngine();

    /// Ties the start sentinels of all streams together, and the end sentinels. Call it once,
    /// after the last AddStream.
    void Initialize();
    /// Empties every stream.
    void CPlexaReset();
    /// Makes a stream; its index, or -1 for a null name, beyond 50 streams and when memory runs
    /// out. A name longer than 50 characters is left out.
    int AddStream(const char* name);
    int GetNumStreams();
    /// A sync mark for the stream, linked nowhere and the caller's; null if memory runs out.
    CSyncMark* CreateSyncMark(CStream* pStream);
    /// Rebuilds the order in which searches visit the streams.
    void RankPopulatedStreams();

    /// The stream of durations that are asked for without naming one. SetDefaultTimeStream always
    /// returns true.
    bool SetDefaultTimeStream(CStream* pStream);
    CStream* GetDefaultTimeStream();
    /// Numbers for the host and its rules.
    void SetLanguage(int language);
    int GetLanguage();
    void SetDialect(int dialect);
    int GetDialect();
    void setAbort(bool bAbort);

    /// True if pTo lies at pFrom or beyond it in the direction; false for null.
    bool CSMSearch(CSyncMark* pFrom, CSyncMark* pTo, ScanDirectionType direction);
    /// True if pFirst projects onto pSecond, or onto a mark left of it with only sync marks
    /// between.
    bool Adjacent(CSyncMark* pFirst, CSyncMark* pSecond);
    /// The last mark, in the direction, of the run of sync marks at the mark's place in the stream;
    /// null if it has no counterpart there.
    CSyncMark* Move(CStream* pStream, CSyncMark* pSyncMark, ScanDirectionType direction);

    /// Set a field of the stream's tokens between two marks of any streams; to the end of the
    /// stream if the right mark does not lie right of the left one. The value is a number, or a
    /// text: a number for an fvInt field, else a possible value (-1 if it is none). False, with
    /// nothing changed, for null, marks without a counterpart in the stream and, with a text, for
    /// an unknown field; a number for an unknown field is true and changes nothing.
    bool Mark(CStream* pStream, const char* fieldName, int value, CSyncMark* pLeft,
              CSyncMark* pRight);
    bool Mark(CStream* pStream, const char* fieldName, const char* valueText, CSyncMark* pLeft,
              CSyncMark* pRight);
    /// The same for every item of a list like "<stress:1 $v.tone>", also behind the name of its
    /// stream ("[" is phone, "{" inp, "%word " word; true and nothing done for an unknown one). The
    /// notation is in docs/notation.md. False, with nothing changed, for a list that is not closed,
    /// parts that are too long, unknown fields and variables without a token; a variable without a
    /// field is false when its turn comes, the items before it hold.
    bool Mark(CStream* pStream, const char* markString, CSyncMark* pLeft, CSyncMark* pRight);
    bool Mark(const char* markString, CSyncMark* pLeft, CSyncMark* pRight);

    /// The sum of field 0 over the tokens between two marks, less the left offset and plus the
    /// right one; an offset belongs to the mark before it. -1 for a stream whose field 0 is no
    /// fvInt or that is not there, and if the right mark does not lie right of the left one; 0 if a
    /// mark has no counterpart. The unit is the host's; sums wrap at 32 bits.
    int Duration(CStream* pStream, CSyncMark* pLeft, int leftOffset, CSyncMark* pRight,
                 int rightOffset);
    int Duration(CSyncMark* pLeft, CSyncMark* pRight);
    int Duration(CSyncMark* pLeft, int leftOffset, CSyncMark* pRight);
    int Duration(CSyncMark* pLeft, CSyncMark* pRight, int rightOffset);
    int Duration(CSyncMark* pLeft, int leftOffset, CSyncMark* pRight, int rightOffset);
    int Duration(CStream* pStream, CSyncMark* pLeft, CSyncMark* pRight);
    int Duration(CStream* pStream, CSyncMark* pLeft, int leftOffset, CSyncMark* pRight);
    int Duration(CStream* pStream, CSyncMark* pLeft, CSyncMark* pRight, int rightOffset);
    int Duration(const char* streamName, CSyncMark* pLeft, CSyncMark* pRight);
    int Duration(const char* streamName, CSyncMark* pLeft, int leftOffset, CSyncMark* pRight);
    int Duration(const char* streamName, CSyncMark* pLeft, CSyncMark* pRight, int rightOffset);
    int Duration(const char* streamName, CSyncMark* pLeft, int leftOffset, CSyncMark* pRight,
                 int rightOffset);
    /// Rescales field 0 of the tokens between two marks to a new sum, by whole thousandths: the new
    /// sum is the old one times that factor, rounded up. False, with nothing changed, where
    /// Duration() would fail or is 0, and for products beyond 32 bits.
    bool SetDuration(CStream* pStream, CSyncMark* pLeft, CSyncMark* pRight, int newDuration);
    bool SetDuration(CSyncMark* pLeft, CSyncMark* pRight, int newDuration);

    /// What the latest notation or edit of this container (InsertString, Mark, SetDuration, the
    /// insertions, deletions and projections) refused, and why: "character 7: the stream has no
    /// field \"strss\"". Characters count from 1. Empty if it refused nothing. Some calls answer
    /// true though they left something out: this tells. Valid until the next such call.
    const char* LastError();

    /// Puts a list on top of the stack, or null for none; a list of another container counts as
    /// null. An entry beyond 1024 is refused. The live fences stay as they are.
    void PushVarListStack(CVarList* pVarList);
    /// Takes the top list off; the fences of the new top become the live ones.
    void PopVarListStack();
    /// The top list; null if there is none.
    CVarList* GetCurrentVarList();
    /// Set and read the live fence of a stream; false for an unknown one.
    void Fence(int streamIndex, bool bOn);
    void Fence(const char* name, bool bOn);
    bool Fence(int streamIndex);
    bool Fence(const char* name);

    /// Evaluates a compiled test of the host's rules, see CPlexaTest::Test.
    bool Test(const char* name, unsigned char const (*const program)[5], int base);

    /// Has every test of this container watched; null ends that. The observer stays the caller's.
    void SetTestObserver(CPlexaTestObserver* pObserver);

    /// Reports to the viewer; the argument is the object, list or text that the code concerns.
    /// Does nothing while no viewer is connected.
    void sendMessage(int code, std::intptr_t argument);
    void sendMessage(const char* text);
    /// Reports what the streams hold; with `bFull` also their sentinels and descriptions, the
    /// language, and the variable lists.
    void sendEntirePlexaObj(bool bFull);
    /// How long a report, or the beginning of a connection, waits for a viewer that is silent
    /// before the link is closed as if it were lost: what was reported before stays told, and the
    /// host may connect again. 0 and less, as at first, stand for no limit. Holds for later
    /// connections too.
    void SetViewerPatience(int milliseconds);
    /// True while a viewer is connected. One that has gone counts as none: its link is closed.
    bool HasViewer();
    /// Carries out what the viewer has asked for since the last call: edits of a token's field, and
    /// the end of the link. Does not wait; call it where an edit may happen, for example between
    /// two rules.
    void ProcessRecvMsg();

private:
    friend struct mlds::Internals;
    friend struct mlds::ListAccess;
    friend struct mlds::ConversationAccess;
    friend class mlds::Attempt;

    static constexpr int kMaxStreams = 50;
    static constexpr int kMaxVarLists = 1024;
    static constexpr int kMaxName = 50;

    struct Rank {
        int nStream;
        int nSyncMarks;
    };

    MLDS_LOCAL unsigned int incr_SearchNumber();
    MLDS_LOCAL void Release();
    MLDS_LOCAL void LetGoOfVarLists();
    MLDS_LOCAL bool GrowMessageBuffer(int capacity);
    MLDS_LOCAL void DropMessageBuffer();
    MLDS_LOCAL int ReceiveRequests(bool& bClosed);
    MLDS_LOCAL void HandleRequests(int nBytes);
    MLDS_LOCAL CSyncMark** WorkStack();
    MLDS_LOCAL void FollowTopVarList();
    MLDS_LOCAL bool InsertList(CStream* pInto, CStreamObj* pFrom, CStreamObj* pTo,
                               CStreamObj** objs, int count);
    MLDS_LOCAL bool InsertAtLeft(CStream* pInto, CSyncMark* pLeft, CSyncMark* pRight,
                                 CStreamObj* pObj);
    MLDS_LOCAL bool InsertAtRight(CStream* pInto, CSyncMark* pLeft, CSyncMark* pRight,
                                  CStreamObj* pObj);
    MLDS_LOCAL bool InsertIntoToken(CStream* pInto, CSyncMark* pLeft, CSyncMark* pRight,
                                    CStreamObj* pObj);

    // These stand in the order that hosts are built with, used or not; what came later is below.
    CMessageSocket m_socket;
    bool m_bDelayDisplay;
    bool m_bMessageEngine;
    CPlexaTest* m_pTest;
    CStream* m_pStreams[kMaxStreams + 1];  // one more, always null, for pStream(50)
    Rank m_ranking[kMaxStreams];
    int m_nRanked;
    CVarList* m_pVarLists[kMaxVarLists];
    int m_nVarLists;
    int m_nStreams;
    bool m_bUnread;  // true, and read by nobody
    CStream* m_pDefaultTimeStream;
    CEngine* m_pEngine;
    bool m_bAbort;
    int m_nLanguage;
    int m_nDialect;
    std::uint32_t m_nSearchNumber;
    char* m_pMessageBuffer;
    int m_nMessageCapacity;

    CPlexa* m_pHome;  // whose streams these are: this container, or the one it is a copy of
    int m_nFenced;    // streams whose live fence is on
    CSyncMark** m_ppWorkStack;     // for one search at a time
    CVarList* m_pFirstVarList;     // every list of this container, stacked or not
    std::uint64_t m_nSearchSteps;  // that searches may still take

    // What was refused, see src/container/attempt.h.
    const char* m_szRefusal;  // null if nothing was
    char m_szRefusedPart[kMaxName + 2];
    char m_szLastError[160];
    int m_nRefusedAt;  // offset in the text, -1 where it is about none
    int m_nAttempts;   // calls running inside each other
};

#endif
