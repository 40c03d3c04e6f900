// The door to what fields and their value sets remember, for those that fill it and forget it.
#ifndef MLDS_STREAM_FIELDACCESS_H
#define MLDS_STREAM_FIELDACCESS_H

#include "mlds/field.h"

namespace mlds {

struct FieldAccess {
    /// The values that follow from a name, as far as they have been derived; null for none.
    static DerivedValues*& Derived(CField* p) { return p->m_pDerived; }
    /// The field whose table the set is in and whose derived values it therefore decides.
    static CField*& ListedIn(CFieldValueSet* p) { return p->m_pListedIn; }
    /// How many fields have the set in their table: a field and its copies.
    static int& Users(CFieldValueSet* p) { return p->m_nUsers; }
};

}  // namespace mlds

#endif
