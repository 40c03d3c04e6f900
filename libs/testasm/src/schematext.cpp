// Declarations: reading and writing schemas.
#include "declarations.h"

namespace mlds_testasm {

namespace {

struct TypeName {
    const char* name;
    FieldValType type;
};
constexpr TypeName kTypes[] = {{"enum", fvEnum},  {"int", fvInt},   {"float", fvFloat},
                               {"bool", fvBool},  {"char", fvChar}, {"type3", fvType3},
                               {"type5", fvType5}};

const char* NameOfType(FieldValType type) {
    for (const TypeName& known : kTypes) {
        if (known.type == type) return known.name;
    }
    return "enum";
}

void ReadNames(Line& line, const char* what, std::vector<std::string>* pNames) {
    while (!line.AtEnd()) {
        // A value may look like a number, and "07" is not "7".
        if (line.Is(Lex::number)) {
            pNames->emplace_back(line.Next().source);
        } else if (!line.Name(what, &pNames->emplace_back())) {
            return;
        }
    }
}

void ReadField(Line& line, SchemaStream& stream) {
    SchemaField field;
    if (!line.Name("the name of a field", &field.name)) return;
    for (const TypeName& known : kTypes) {
        if (!line.SkipWord(known.name)) continue;
        field.type = known.type;
        ReadNames(line, "a possible value", &field.values);
        stream.fields.push_back(std::move(field));
        return;
    }
    line.Expected("the type of the field (enum, int, float, bool or char)");
}

void ReadVariables(Line& line, Schema& schema, Diagnostics& diagnostics) {
    while (line.Is(Lex::mark) || line.Is(Lex::token)) {
        if (schema.FindVariable(line.Peek().text) >= 0) {
            diagnostics.Error(line.place(), "expected a new variable, as '" +
                                                Shortened(line.Peek().text) +
                                                "' is declared already");
        }
        const Lexeme variable = line.Next();
        schema.variables.push_back({variable.text, variable.kind == Lex::token});
    }
    if (!line.AtEnd()) line.Expected("a mark variable (^name) or a token variable ($name)");
}

}  // namespace

bool ReadDeclaration(Line& line, Schema& schema, Diagnostics& diagnostics) {
    if (line.SkipWord("stream")) {
        line.Name("the name of a stream", &schema.streams.emplace_back().name);
    } else if (line.IsWord("field") || line.IsWord("set")) {
        const bool bField = line.IsWord("field");
        if (schema.streams.empty() || (!bField && schema.streams.back().fields.empty())) {
            line.Expected(bField ? "the stream of the field" : "the field of the set");
            return true;
        }
        SchemaStream& stream = schema.streams.back();
        line.Next();
        if (bField) {
            ReadField(line, stream);
        } else {
            ReadNames(line, "the name of a set", &stream.fields.back().sets);
        }
    } else if (line.SkipWord("variable")) {
        ReadVariables(line, schema, diagnostics);
    } else {
        return false;
    }
    return true;
}

Schema ReadSchema(std::string_view text, Diagnostics& diagnostics) {
    Schema schema;
    int number = 0;
    for (const std::string_view row : SplitLines(text)) {
        Line line(row, ++number, diagnostics);
        if (line.AtEnd() || ReadDeclaration(line, schema, diagnostics)) continue;
        line.Expected("'stream', 'field', 'set' or 'variable'");
    }
    return schema;
}

std::string WriteSchema(const Schema& schema) {
    std::string text;
    for (const SchemaStream& stream : schema.streams) {
        text += "stream " + Quoted(stream.name) + "\n";
        for (const SchemaField& field : stream.fields) {
            text += "field " + Quoted(field.name) + " " + NameOfType(field.type);
            for (const std::string& value : field.values) text += " " + Quoted(value);
            if (!field.sets.empty()) text += "\nset";
            for (const std::string& set : field.sets) text += " " + Quoted(set);
            text += "\n";
        }
    }
    if (!schema.variables.empty()) text += "variable";
    for (const SchemaVariable& variable : schema.variables) {
        text += (variable.bToken ? " $" : " ^") + Quoted(variable.name);
    }
    return text + (schema.variables.empty() ? "" : "\n");
}

}  // namespace mlds_testasm
