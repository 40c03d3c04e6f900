// The names of a container and of a variable list. Apart from the rest of the tool, as this alone
// needs the library and not just its headers.
#ifndef MLDS_TESTASM_PLEXASCHEMA_H
#define MLDS_TESTASM_PLEXASCHEMA_H

#include "mlds/plexa.h"
#include "mlds/testasm/schema.h"
#include "mlds/varlist.h"

namespace mlds_testasm {

/// A snapshot of the streams, fields, values and sets of a container, and of the variables of a
/// list, which may be null: the host then fills Schema::variables in the order in which it adds
/// them to its lists.
inline Schema SchemaOf(CPlexa& plexa, CVarList* pVarList) {
    Schema schema;
    for (int s = 0; s < plexa.GetNumStreams(); ++s) {
        CStream* pStream = plexa.pStream(s);
        SchemaStream& stream = schema.streams.emplace_back();
        stream.name = pStream->GetStreamName();
        for (int f = 0; f < pStream->GetNumFields(); ++f) {
            CField* pField = pStream->GetField(f);
            SchemaField& field = stream.fields.emplace_back();
            field.name = pField->GetFieldName();
            field.type = pField->GetFieldType();
            for (int i = 0; i < pField->GetNumPossibleValues(); ++i) {
                field.values.emplace_back(pField->GetPossibleValues(i));
            }
            for (int i = 0; i < pField->GetNumFieldValueSets(); ++i) {
                field.sets.emplace_back(pField->GetFieldValueSet(i)->GetName());
            }
        }
    }
    for (int v = 0; pVarList != nullptr && v < pVarList->GetNumVars(); ++v) {
        schema.variables.push_back(
            {pVarList->GetVarName(v), pVarList->GetVarType(v) == vtTokenPtr});
    }
    return schema;
}

}  // namespace mlds_testasm

#endif
