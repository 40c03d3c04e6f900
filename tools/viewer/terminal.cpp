// Aligned streams and tables for the terminal.
#include "terminal.h"

#include <algorithm>

#include "layout.h"
#include "mlds/field.h"
#include "text.h"

namespace mlds_viewer {

namespace {

using Line = std::u32string;

constexpr std::size_t kLongestLabel = 40;

// The tokens of a cell; several touch, so nothing else stands between them.
Line LabelOf(const Mirror& mirror, const std::vector<Id>& tokens) {
    Line label;
    for (const Id token : tokens) {
        if (!label.empty()) label += U'\u00B7';
        label += Wide(Shown(mirror.NameOf(token), kLongestLabel));
    }
    // Longer ones would push everything else out of sight.
    if (label.size() > kLongestLabel) label = label.substr(0, kLongestLabel - 1) + U'\u2026';
    return label;
}

struct Row {
    const Lane* pLane;
    std::vector<Line> labels;  // by cell

    // A line whose bars stand at the places of their marks.
    Line Draw(const std::vector<std::size_t>& places) const {
        Line line;
        for (std::size_t i = 0; i < pLane->marks.size(); ++i) {
            line.resize(std::max(line.size(), places[pLane->marks[i].instant]), U' ');
            line += U'|';
            if (i < labels.size()) line += labels[i];
        }
        return line;
    }
};

// The last place at which a block that begins at `begin` can end: at marks if there are any.
std::size_t EndOfBlock(const std::vector<std::size_t>& sortedPlaces, std::size_t begin,
                       std::size_t nColumns) {
    const auto next = std::ranges::upper_bound(sortedPlaces, begin + nColumns - 1);
    const std::size_t end = next == sortedPlaces.begin() ? begin : *std::prev(next);
    return end > begin ? end : begin + nColumns - 1;
}

Line Padded(Line text, std::size_t width) {
    text.resize(std::max(width, text.size()), U' ');
    return text;
}

std::string Block(const std::vector<Line>& names, const std::vector<Line>& lines, std::size_t begin,
                  std::size_t end) {
    std::string text;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        Line line = names[i];
        if (begin < lines[i].size()) line += lines[i].substr(begin, end + 1 - begin);
        line.resize(line.find_last_not_of(U' ') + 1);
        text += Narrow(WithIsolatedCells(line)) + '\n';
    }
    return text;
}

std::string PaddedText(const std::string& engineText, std::size_t width) {
    return Narrow(WithIsolatedCells(Padded(Wide(Shown(engineText)), width)));
}

std::size_t LongestName(const std::vector<Field>& fields) {
    std::size_t longest = 0;
    for (const Field& field : fields) longest = std::max(longest, Wide(Shown(field.name)).size());
    return longest;
}

}  // namespace

std::string TiersText(const Mirror& mirror, std::size_t nColumns) {
    const Layout layout = LayOut(mirror);
    std::vector<Row> rows;
    std::vector<Line> names;
    std::vector<std::size_t> widths;
    std::size_t nameWidth = 0;
    for (const Lane& lane : layout.lanes) {
        const Stream& stream = mirror.streams()[static_cast<std::size_t>(lane.stream)];
        names.push_back(Wide(Shown(stream.name, kLongestLabel)) + U' ');
        nameWidth = std::max(nameWidth, names.back().size());
        Row& row = rows.emplace_back(Row{&lane, {}});
        for (const std::vector<Id>& tokens : lane.cells) {
            row.labels.push_back(LabelOf(mirror, tokens));
            widths.push_back(row.labels.back().size() + 1);
        }
    }
    std::vector<std::size_t> places = Places(layout, widths);
    std::vector<Line> lines;
    std::size_t length = 0;
    for (const Row& row : rows) {
        lines.push_back(row.Draw(places));
        length = std::max(length, lines.back().size());
    }
    for (Line& name : names) name = Padded(name, nameWidth);
    std::ranges::sort(places);
    const std::size_t room = std::max(nColumns, nameWidth + 20) - nameWidth;
    std::string text;
    for (std::size_t begin = 0; begin + 1 < length || (begin == 0 && length > 0);) {
        const std::size_t end = EndOfBlock(places, begin, room);
        if (begin > 0) text += '\n';
        text += Block(names, lines, begin, end);
        begin = end;
    }
    return text;
}

std::string StreamsText(const Mirror& mirror) {
    std::string text;
    for (std::size_t i = 0; i < mirror.streams().size(); ++i) {
        const Stream& stream = mirror.streams()[i];
        const std::vector<Id> chain = mirror.Chain(static_cast<int>(i));
        const auto nTokens = std::ranges::count_if(
            chain, [&](Id id) { return mirror.Find(id)->kind == Kind::token; });
        text += std::to_string(i) + ' ' + InLine(stream.name) + ": " + std::to_string(nTokens) +
                " tokens, " + std::to_string(static_cast<long>(chain.size()) - nTokens) +
                " marks\n";
        for (const Field& field : stream.fields) {
            text += "    " + PaddedText(field.name, LongestName(stream.fields)) + "  " +
                    TypeName(field.type);
            for (const std::string& value : field.values) text += ' ' + InLine(value);
            text += '\n';
        }
    }
    return text.empty() ? "no streams\n" : text;
}

std::string VariablesText(const Mirror& mirror) {
    std::string text;
    for (const VariableList& list : mirror.lists()) {
        text += "list " + HandleText(list.id) + '\n';
        for (const auto& [index, variable] : list.variables) {
            text += "    " + std::to_string(index) + ' ' + InLine(variable.name) + " = " +
                    mirror.Describe(variable.content) + '\n';
        }
    }
    return text.empty() ? "no variables\n" : text;
}

std::string TokensText(const Mirror& mirror, int stream) {
    std::string text;
    int number = 0;
    for (const Id id : mirror.Chain(stream)) {
        if (mirror.Find(id)->kind != Kind::token) continue;
        text += std::to_string(++number) + ' ' + InLine(mirror.NameOf(id)) + '\n';
    }
    return text.empty() ? "no tokens\n" : text;
}

std::string FieldsText(const Mirror& mirror, Id token) {
    const Object& object = *mirror.Find(token);
    const std::vector<Field>& fields =
        mirror.streams()[static_cast<std::size_t>(object.stream)].fields;
    std::string text = mirror.Describe(token) + ", " + HandleText(token) + '\n';
    for (std::size_t i = 0; i < fields.size(); ++i) {
        text += "    " + PaddedText(fields[i].name, LongestName(fields)) + "  " +
                (i < object.values.size() ? Isolated(Shown(object.values[i])) : "") + '\n';
    }
    return text;
}

std::string TypeName(std::optional<int> type) {
    switch (type.value_or(-1)) {
        case fvInt: return "int";
        case fvFloat: return "float";
        case fvBool: return "bool";
        case fvChar: return "char";
        case fvEnum:
        case fvType3:
        case fvType5: return "enum";
        default: return "name";
    }
}

}  // namespace mlds_viewer
