// Declaring the fields of a stream: what its tokens tell, and what they derive from their names.
//
// Names are given as one text in UTF-8, separated by spaces. Where names are chosen, "p..g" stands
// for all from p to g in the order in which they were declared.
#ifndef TRANSCRIBE_SCHEMA_H
#define TRANSCRIBE_SCHEMA_H

#include <string>
#include <vector>

#include "mlds/mlds.h"

namespace transcribe {

/// A set of names, which is at the same time the value that its names give to a field.
struct Feature {
    const char* set;
    std::string names;
};

/// The feature of all names that are in no other set. Stands last.
inline const Feature kRest = {"undefined", ""};

/// Adds a field with its possible values, if it has any. A stream's name field comes first.
CField* AddField(CStream* pStream, const char* field, FieldValType type,
                 const std::string& values = "");

/// Adds a field that every token derives from its name: the value is the first set that has it.
void AddFeatures(CStream* pStream, const char* field, const std::vector<Feature>& features);

/// Adds a field that is "yes" for the given names and "no" for all others.
void AddYesNo(CStream* pStream, const char* field, const std::string& names);

}  // namespace transcribe

#endif
