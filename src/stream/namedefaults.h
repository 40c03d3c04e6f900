// Default values that hold for tokens of one name.
#ifndef MLDS_STREAM_NAMEDEFAULTS_H
#define MLDS_STREAM_NAMEDEFAULTS_H

#include "mlds/field.h"

namespace mlds {

/// Ends one use of a table of entries, see sharedblock.h; the last frees the entries.
void DropNameDefaults(NameSpcDefVal** ppEntries, int n);

}  // namespace mlds

#endif
