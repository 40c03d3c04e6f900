// The messages of a viewer link: their codes, and what goes with each.
#ifndef MLDS_REPORT_MESSAGES_H
#define MLDS_REPORT_MESSAGES_H

namespace mlds {

/// What a viewer is told, by the codes that go over the wire.
enum MessageCode {
#define MLDS_MESSAGE(name, code, payload, when) msg##name = code,
#include "report/messages.def"
#undef MLDS_MESSAGE
};

/// What the text of a message says.
enum class Payload {
    none,      // there is no text
    inserted,  // an object, its left neighbour, and its values or ties
    changed,   // an object and its values or ties
    removed,   // an object
    stream,    // a stream's name and its fields
    language,  // numbers of language and dialect
    list,      // a variable list
    variable,  // a variable of a list and what it is bound to
    text       // whatever the sender says
};

/// True if the text comes ready from who sends the message.
constexpr bool IsTextOfSender(Payload payload) {
    return payload == Payload::stream || payload == Payload::variable || payload == Payload::text;
}

/// A line of the table of messages.
struct MessageKind {
    int code;
    Payload payload;
    const char* when;
};

inline constexpr MessageKind kMessageKinds[] = {
#define MLDS_MESSAGE(name, code, payload, when) {code, Payload::payload, when},
#include "report/messages.def"
#undef MLDS_MESSAGE
};

/// The line of a code; null for a code that no message has.
constexpr const MessageKind* FindMessage(int code) {
    for (const MessageKind& kind : kMessageKinds) {
        if (kind.code == code) return &kind;
    }
    return nullptr;
}

/// The free text that says that the container was initialised or emptied.
inline constexpr const char* kResetText = "resetplexa";

}  // namespace mlds

#endif
