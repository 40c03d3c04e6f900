// Why a call was refused: kept by the container, so that a host need not guess among the reasons
// behind one false.
//
// Every notation and edit of the container is an attempt while it runs. Operations call each other;
// only the outermost attempt begins with a clean slate, and the first thing that was refused is
// what counts. A refusal costs a pointer and the copy of a name; the sentence is made when somebody
// asks for it.
#ifndef MLDS_CONTAINER_ATTEMPT_H
#define MLDS_CONTAINER_ATTEMPT_H

#include <string_view>

#include "mlds/plexa.h"

namespace mlds {

// Reasons that several operations have.
constexpr const char* kNoStream = "the stream is null or belongs to another container";
constexpr const char* kNoText = "the text is null";
constexpr const char* kNoPrefix = "a text begins with \"[\", \"{\" or \"%\" and a stream's name";
constexpr const char* kNoBounds = "both marks are null";
constexpr const char* kNoNameField = "the stream has no field \"name\"";
constexpr const char* kNoPlaceFor = "the stream has no place for \"%s\"";
constexpr const char* kNotPlaced = "the stream has no place for the object there";
constexpr const char* kNoSuchPlace =
    "a mark that is needed has no counterpart in the stream, several tokens lie there, or memory "
    "ran out";
constexpr const char* kNoMark = "a mark is null, belongs to another container or is in no stream";
constexpr const char* kNoCounterpart = "a mark has no counterpart in the stream";
constexpr const char* kNotCarried =
    "a mark has no counterpart in the stream, and tokens leave the place for one open";
constexpr const char* kNoPlace = "the right mark does not lie right of the left one";
constexpr const char* kNoRoom = "no mark can stand there, or memory ran out";
constexpr const char* kNotInsertable =
    "the object is null, linked already, or belongs to another container";
constexpr const char* kOutOfMemory = "out of memory";

class Attempt {
public:
    /// `signature` is what a debug entry about a refusal names; without one, nothing is logged.
    explicit Attempt(CPlexa* pPlexa, const char* signature = nullptr, int line = __builtin_LINE());
    ~Attempt();
    Attempt(const Attempt&) = delete;
    Attempt& operator=(const Attempt&) = delete;

    /// Notes a reason, a text that lives for ever with at most one "%s", which stands for `part`.
    /// Always false.
    bool Refuse(const char* reason, std::string_view part = {});
    /// The same, for the character of the text that has the given offset.
    bool RefuseAt(std::ptrdiff_t offset, const char* reason, std::string_view part = {});
    /// The text of this attempt begins so many characters after that of the caller.
    void ShiftBy(std::ptrdiff_t offset);

private:
    CPlexa* m_pPlexa;
    const char* m_szSignature;
    int m_nLine;
};

}  // namespace mlds

#endif
