// The names that test programs may use for streams, fields, values and variables.
#ifndef MLDS_TESTASM_SCHEMA_H
#define MLDS_TESTASM_SCHEMA_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "mlds/field.h"

namespace mlds_testasm {

class Diagnostics;

struct SchemaField {
    std::string name;
    FieldValType type = fvEnum;
    std::vector<std::string> values;  ///< possible values
    std::vector<std::string> sets;    ///< field value sets
};

struct SchemaStream {
    std::string name;
    std::vector<SchemaField> fields;
};

struct SchemaVariable {
    std::string name;
    bool bToken = false;  ///< holds a token, not a sync mark
};

/// A snapshot of names; everything has the index that it has in the container and the variable
/// list. SchemaOf (plexaschema.h) takes it from a container, ReadSchema from declarations.
struct Schema {
    std::vector<SchemaStream> streams;
    std::vector<SchemaVariable> variables;

    /// The index of the first of that name, or -1.
    int FindStream(std::string_view name) const;
    int FindField(int stream, std::string_view name) const;
    int FindVariable(std::string_view name) const;
    /// Null if there is none.
    const SchemaField* FieldAt(int stream, int field) const;
    const SchemaVariable* VariableAt(int index) const;

    /// The number that a text stands for in a field: a possible value, a set, a character or a
    /// number, as the field's type has it. If there is none, `pExpected` says what could stand.
    std::optional<int> ValueOf(int stream, int field, std::string_view text,
                               std::string* pExpected = nullptr) const;
    /// The text for which ValueOf gives this number.
    std::optional<std::string> ValueText(int stream, int field, int value) const;
};

/// Reads declarations, one a line:
///
///     stream phone
///     field name enum a e i 'tS'     enum, int, float, bool or char, then the possible values
///     field vowel enum
///     set yes no                     sets of the field above
///     variable ^left ^right $seen    mark and token variables
///
/// Names may be quoted; ';' and '#' begin comments.
Schema ReadSchema(std::string_view text, Diagnostics& diagnostics);

/// The declarations of a schema.
std::string WriteSchema(const Schema& schema);

}  // namespace mlds_testasm

#endif
