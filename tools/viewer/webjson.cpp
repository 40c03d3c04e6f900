// JSON for the page, and its wishes.
#include "webjson.h"

#include <nlohmann/json.hpp>

#include "layout.h"
#include "terminal.h"
#include "text.h"

namespace mlds_viewer {

namespace {

using nlohmann::json;

constexpr std::size_t kLongestText = Viewer::kLongestValue;

// A browser takes seconds for a text of a megabyte, and nobody reads it. What is cut is longer than
// any value that can be set, so that no beginning is taken for the whole.
std::string Text(const std::string& engineText) {
    return Shown(engineText, kLongestText);
}

json FieldsJson(const Stream& stream) {
    json fields = json::array();
    for (const Field& field : stream.fields) {
        json values = json::array();
        for (const std::string& value : field.values) values.push_back(Text(value));
        fields.push_back({{"name", Text(field.name)},
                          {"type", TypeName(field.type)},
                          {"values", std::move(values)}});
    }
    return fields;
}

json TokenJson(const Mirror& mirror, Id id) {
    json values = json::array();
    for (const std::string& value : mirror.Find(id)->values) values.push_back(Text(value));
    return {{"id", id}, {"values", std::move(values)}};
}

json LaneJson(const Mirror& mirror, const Lane& lane) {
    const Stream& stream = mirror.streams()[static_cast<std::size_t>(lane.stream)];
    json marks = json::array();
    for (const PlacedMark& mark : lane.marks) marks.push_back({mark.id, mark.instant});
    json cells = json::array();
    for (const std::vector<Id>& tokens : lane.cells) {
        json cell = json::array();
        for (const Id token : tokens) cell.push_back(TokenJson(mirror, token));
        cells.push_back(std::move(cell));
    }
    return {{"stream", lane.stream},
            {"name", Text(stream.name)},
            {"fields", FieldsJson(stream)},
            {"marks", std::move(marks)},
            {"cells", std::move(cells)}};
}

json ListJson(const Mirror& mirror, const VariableList& list) {
    json variables = json::array();
    for (const auto& [index, variable] : list.variables) {
        variables.push_back({{"index", index},
                             {"name", Text(variable.name)},
                             {"content", variable.content},
                             {"what", mirror.Describe(variable.content)}});
    }
    return {{"id", HandleText(list.id)}, {"variables", std::move(variables)}};
}

}  // namespace

std::string StatusJson(const Status& status) {
    return json{{"run", status.run},
                {"version", status.version},
                {"connected", status.bConnected},
                {"takesRequests", status.bTakesRequests},
                {"engine", status.engine},
                {"first", status.first},
                {"last", status.last},
                {"shown", status.shown}}
        .dump();
}

std::string StructureJson(const Mirror& mirror, std::size_t number,
                          const std::vector<Id>& changed) {
    const Layout layout = LayOut(mirror);
    json lanes = json::array();
    for (const Lane& lane : layout.lanes) lanes.push_back(LaneJson(mirror, lane));
    json lists = json::array();
    for (const VariableList& list : mirror.lists()) lists.push_back(ListJson(mirror, list));
    return json{{"number", number},
                {"language", Text(mirror.language())},
                {"instants", layout.nInstants},
                {"lanes", std::move(lanes)},
                {"lists", std::move(lists)},
                {"changed", changed}}
        .dump();
}

std::string EntriesJson(const std::vector<EntryPtr>& entries) {
    json list = json::array();
    for (const EntryPtr& pEntry : entries) {
        list.push_back({{"number", pEntry->number},
                        {"code", pEntry->message.code},
                        {"words", pEntry->words},
                        {"object", pEntry->object}});
    }
    return list.dump();
}

std::optional<FieldWish> ReadFieldWish(const std::string& text) {
    const json wish = json::parse(text, nullptr, false);
    if (!wish.is_object()) return std::nullopt;
    const auto isWhole = [&](const char* key, std::uint64_t most) {
        return wish.contains(key) && wish[key].is_number_unsigned() &&
               wish[key].get<std::uint64_t>() <= most;
    };
    if (!isWhole("token", UINT32_MAX) || !isWhole("field", INT32_MAX) || !wish.contains("value") ||
        !wish["value"].is_string()) {
        return std::nullopt;
    }
    return FieldWish{wish["token"].get<Id>(), wish["field"].get<int>(),
                     wish["value"].get<std::string>()};
}

std::string AnswerJson(const std::string& why) {
    return json{{"error", why}}.dump();
}

}  // namespace mlds_viewer
