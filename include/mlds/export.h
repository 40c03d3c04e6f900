// What the library exports, and the names that every header needs.
#ifndef MLDS_EXPORT_H
#define MLDS_EXPORT_H

// MLDS_API exports a function, or a class with all of its members; MLDS_LOCAL takes a member out
// again. Private members are taken out, so that they can change without a host noticing, but for
// virtual ones and those that inline public ones call.
#if defined(MLDS_STATIC)
#define MLDS_API
#define MLDS_LOCAL
#elif defined(_WIN32)
#if defined(MLDS_BUILDING_LIBRARY)
#define MLDS_API __declspec(dllexport)
#else
#define MLDS_API __declspec(dllimport)
#endif
#define MLDS_LOCAL  // a member cannot be taken out of an exported class there
#elif defined(__GNUC__)
#define MLDS_API __attribute__((visibility("default")))
#define MLDS_LOCAL __attribute__((visibility("hidden")))
#else
#define MLDS_API
#define MLDS_LOCAL
#endif

class CEngine;  // The host's engine. The library stores and returns it and never looks inside.

class CField;
class CFieldValueSet;
class CMessageSocket;
class CPacket;
class CPlexa;
class CPlexaTest;
class CPlexaTestObserver;
class CStream;
class CStreamObj;
class CSyncMark;
class CToken;
class CVarList;

namespace mlds {
struct Internals;    // the library's own doors to private members: for reading,
struct PlaceAccess;  // for where objects lie,
struct FieldAccess;  // for what fields remember,
struct ListAccess;   // for variable lists and fences,
struct ConversationAccess;
class Attempt;         // for the connections to a viewer,
struct HandleAccess;   // and for the table of handles
class OrderNumbering;  // how a stream numbers its objects
struct SyncTable;      // what the members of a synchrony group share
struct ViewerLink;     // what is kept for a connected viewer
struct FieldSlots;     // a token's field values
struct DerivedValues;  // a field's values by name value
}  // namespace mlds

#endif
