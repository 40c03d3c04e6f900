// Messages, understood.
#ifndef MLDS_VIEWER_TOOL_EVENT_H
#define MLDS_VIEWER_TOOL_EVENT_H

#include <optional>
#include <utility>
#include <variant>
#include <vector>

#include "message.h"

namespace mlds_viewer {

enum class Kind { token = 0, mark = 1 };

/// An object as a message names it. While a bulk edit is delayed nothing should be redrawn.
struct ObjectHead {
    bool bDelayed;
    int stream;
    Id id;
    Kind kind;
};

/// The marks that are synchronous with a mark, itself included, by stream.
using Ties = std::vector<std::pair<int, Id>>;

/// What a message says of an object: "|VALUE|VALUE" of a token, the ties of a mark. Values may hold
/// any character, so only who knows the number of fields can part them.
using Body = std::variant<std::string, Ties>;

struct Inserted {
    ObjectHead object;
    Id left;
    Body body;
};
struct Changed {
    ObjectHead object;
    Body body;
};
struct Removed {
    ObjectHead object;
};

struct Field {
    std::string name;
    std::optional<int> type;          // of mlds/field.h; not told of a stream's first field
    std::vector<std::string> values;  // possible ones; none if there are too many to tell
};
struct StreamDescribed {
    int stream;
    std::string name;
    std::vector<Field> fields;
};

struct LanguageTold {
    std::string language;  // "LANGUAGE.DIALECT"
};
struct ListMade {
    Id list;
};
struct ListGone {
    Id list;
};
struct VariableTold {
    bool bDelayed;
    bool bDeclared;  // else used
    Id list;
    int index;
    Id slot;
    std::string name;
    Id content;
};
struct Said {
    std::string text;
};
/// A message that is nothing but its code.
struct Signal {
    int code;
};
/// A text that its message should not have.
struct Unintelligible {
    Message message;
};

using Event = std::variant<Inserted, Changed, Removed, StreamDescribed, LanguageTold, ListMade,
                           ListGone, VariableTold, Said, Signal, Unintelligible>;

Event Understand(const Message& message);

}  // namespace mlds_viewer

#endif
