// What the page is told, as JSON.
#ifndef MLDS_VIEWER_TOOL_WEBJSON_H
#define MLDS_VIEWER_TOOL_WEBJSON_H

#include <string>

#include "viewer.h"

namespace mlds_viewer {

std::string StatusJson(const Status& status);

/// The structure as it was behind an entry, and the objects that changed behind `since`.
std::string StructureJson(const Mirror& mirror, std::size_t number, const std::vector<Id>& changed);

std::string EntriesJson(const std::vector<EntryPtr>& entries);

/// What the page asks for when it sets a field.
struct FieldWish {
    Id token;
    int field;
    std::string value;
};
/// Nothing if the text is no such wish.
std::optional<FieldWish> ReadFieldWish(const std::string& json);

/// An answer: "" where all is well, or what is wrong.
std::string AnswerJson(const std::string& why);

}  // namespace mlds_viewer

#endif
