// Containers that tests write down and read back as text.
//
// A picture is the text of a whole stream, sentinels included: `||h|o|l|a||` is a stream with five
// marks and four tokens, `|||` one with a single mark, `||` an empty one.
#ifndef MLDS_TESTS_SUPPORT_TIERS_H
#define MLDS_TESTS_SUPPORT_TIERS_H

#include <initializer_list>
#include <string>
#include <vector>

#include "mlds/mlds.h"

namespace mlds_test {

/// A stream to be made. Its field "name" is an fvEnum field with the given values; without any, it
/// is an fvChar field, so that every character is a token.
struct Tier {
    const char* name;
    const char* picture = "||";
    std::vector<const char*> values = {};
};

/// Replaces what a stream holds. Throws std::invalid_argument if the picture cannot be built. In an
/// fvChar stream several characters between two marks are tokens that touch.
void Fill(CStream* pStream, const std::string& picture);
std::string Picture(CStream* pStream);

/// The objects of a stream by its right links, sentinels included; ends early, behind the first
/// object whose left link does not lead back.
std::vector<CStreamObj*> Chain(CStream* pStream);

/// The k-th object of a stream, from 0, sentinels not counted. Throws std::out_of_range.
CSyncMark* Mark(CStream* pStream, int k);
CToken* Token(CStream* pStream, int k);
CStreamObj* Object(CStream* pStream, int k);

/// Where a linked object lies: "inp.2" is the mark with index 2 of stream inp, "inp[2]" the token
/// with index 2, "inp.start" and "inp.end" are its sentinels. "null" for null, "inp?" for an object
/// that is not in its stream.
std::string Where(CStreamObj* p);

/// The synchrony groups that hold more than sentinels, as "inp.0=phone.0 inp.2=phone.1". A mark
/// that still points to a group which does not list it is added as "inp.2!".
std::string Ties(CPlexa& plexa);

/// Everything there is to see of a container, one object per line, for "nothing changed".
/// Order indices are left out unless wanted, as reading them settles a numbering put off.
std::string Dump(CPlexa& plexa, bool bIndices = false);

/// A container with its streams made and filled, and the sentinels tied together.
struct Tiers {
    explicit Tiers(std::initializer_list<Tier> tiers);

    /// Throws std::out_of_range for an unknown stream, like everything below.
    CStream* operator[](const std::string& stream);
    CSyncMark* Mark(const char* stream, int k) { return mlds_test::Mark((*this)[stream], k); }
    CToken* Token(const char* stream, int k) { return mlds_test::Token((*this)[stream], k); }
    CSyncMark* First(const char* stream) { return (*this)[stream]->pGetFirstStreamObj(); }
    CSyncMark* Last(const char* stream) { return (*this)[stream]->pGetLastStreamObj(); }
    std::string Picture(const char* stream) { return mlds_test::Picture((*this)[stream]); }
    /// The object that Where() calls so; null for "null".
    CStreamObj* At(const std::string& place);
    CSyncMark* MarkAt(const std::string& place) { return static_cast<CSyncMark*>(At(place)); }
    /// Makes marks synchronous as Ties() writes them, "inp.0=phone.0=word.0 inp.2=phone.1"; throws
    /// std::logic_error if the library refuses.
    void TieAll(const std::string& ties);

    CPlexa plexa;
};

/// What CheckStructure looks at beside links, owners and ties.
struct Checks {
    bool bCounters = true;
    bool bTokensApart = true;
    bool bIndices = false;
};

/// Walks the whole structure. Empty if it is whole, else what is wrong first.
std::string CheckStructure(CPlexa& plexa, Checks checks = {});

}  // namespace mlds_test

#endif
