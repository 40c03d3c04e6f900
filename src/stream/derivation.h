// What a name value gives the other fields of a token: the first set that lists it.
#ifndef MLDS_STREAM_DERIVATION_H
#define MLDS_STREAM_DERIVATION_H

#include "internals.h"
#include "stream/fieldslots.h"

namespace mlds {

/// Sets every slot but the first from the name value: to the index of the field's first set that
/// contains it. Fields without such a set keep their value.
void DeriveFields(CStream* pStream, FieldSlots* pSlots, int nameValue);

/// Drops what is remembered for a field; called when one of its sets changes.
void ForgetDerivedValues(CField* pField);

}  // namespace mlds

#endif
