// The field schema of a stream: fields, their possible values, and sets of names.
#ifndef MLDS_FIELD_H
#define MLDS_FIELD_H

#include <cstdint>

#include "mlds/export.h"

/// What the 32-bit value of a field stands for.
enum FieldValType : int {
    fvEnum = 0,   ///< an index into the field's possible values
    fvInt = 1,    ///< a signed integer
    fvFloat = 2,  ///< the bits of a single-precision number
    fvType3 = 3,  ///< as fvEnum
    fvBool = 4,   ///< 0 or 1
    fvType5 = 5,  ///< as fvEnum
    fvChar = 6    ///< a character code, sign-extended
};

/// A default value that holds for tokens of one name.
struct NameSpcDefVal {
    int nFieldIndex;      ///< the field that receives the value; -1 if its name was unknown
    int nNameValueIndex;  ///< the name value that the entry holds for; -1 if unknown
    int nValueType;       ///< 2 for a float, 1 otherwise
    std::int32_t nValue;  ///< the integer, possible-value index or float bits
};

/// A named set of values of a stream's first field, given by ranges and single values to include
/// and to exclude. Its position in its field's list is a value of that field.
class MLDS_API CFieldValueSet {
public:
    /// An empty set over the values of `pField`. A set made here belongs to the caller; a field
    /// makes its own with CField::CreateFieldValueSet.
    CFieldValueSet(CField* pField, int index);
    /// A copy shares the source's ranges.
    CFieldValueSet(const CFieldValueSet& other);
    CFieldValueSet& operator=(const CFieldValueSet& other);
    ~CFieldValueSet();

    /// Names longer than 29 characters are ignored. "undefined" and "undef" make the set contain
    /// every value, for good.
    void SetName(const char* name);
    char* GetName();
    int GetIndex();
    /// Removes every range and value; the name stays.
    void Clear();

    /// Sets n inclusive ranges from 2n bounds, low and high in turn; texts stand for possible
    /// values (-1 when unknown, and for every text where names have no possible values, as with
    /// fvChar: give character codes, sign-extended). Ignored when ranges are already set.
    void SetIncludeRanges(const char* const* bounds, int n);
    void SetIncludeRanges(const int* bounds, int n);
    void SetExcludeRanges(const char* const* bounds, int n);
    void SetExcludeRanges(const int* bounds, int n);
    /// Adds a single value; an unknown text is added as -1. A 31st value is ignored.
    void AddIncludeValue(const char* value);
    void AddIncludeValue(int value);
    void AddExcludeValue(const char* value);
    void AddExcludeValue(int value);

    /// True if the value is included and not excluded. A set given by exclusions alone includes
    /// everything else; a set given by nothing contains nothing.
    bool IsSetMember(int value);

private:
    friend struct mlds::Internals;
    friend struct mlds::FieldAccess;

    static constexpr int kMaxValues = 30;

    char m_szName[30];
    int m_nIndex;
    bool m_bUniversal;
    CField* m_pField;
    int m_nIncludeRanges;
    int m_nExcludeRanges;
    int m_nIncludeValues;
    int m_nExcludeValues;
    int* m_pIncludeLows;
    int* m_pIncludeHighs;
    int* m_pExcludeLows;
    int* m_pExcludeHighs;
    int m_IncludeValues[kMaxValues];
    int m_ExcludeValues[kMaxValues];

    CField* m_pListedIn;  // the field whose list holds this set, told when the set changes
    int m_nUsers;         // the fields that list this set, memberwise copies included
};

/// A field of a stream: its type, possible values, defaults and field value sets.
class MLDS_API CField {
public:
    /// An empty field of type fvEnum. Fields of a stream are made by CStream::AddField.
    explicit CField(CStream* pStream);
    /// A copy shares the source's values, defaults and sets.
    CField(const CField& other);
    CField& operator=(const CField& other);
    ~CField();

    /// Names longer than 50 characters are ignored.
    void SetFieldName(const char* name);
    char* GetFieldName();
    void SetFieldType(FieldValType type);
    FieldValType GetFieldType();

    /// Sets the possible values, copying the n texts. They can be set once.
    void SetPossibleValues(const char* const* values, int n);
    int GetNumPossibleValues();
    /// True if there are possible values.
    bool GetPossibleValues();
    /// The i-th possible value, owned by the field; null if i is out of range.
    char* GetPossibleValues(int i);
    /// The index of the first possible value that equals the text; -1 if there is none.
    int GetValueIndex(const char* value);

    /// The default becomes the index of the text (-1 when it is no possible value).
    void SetDefaultValue(const char* value);
    /// These are ignored unless the type is fvInt, fvBool and fvFloat.
    void SetDefaultValue(int value);
    void SetDefaultValue(bool value);
    void SetDefaultValue(float value);
    /// Sets the default values of n names from 3n texts: name, field to set, value. The fields
    /// named must exist. Can be set once. Throws std::runtime_error("sscanf problem") for a value
    /// with a '.' that does not read as a number.
    void SetDefaultValue(const char* const* list, int n);
    /// The address of the 32-bit default value, -1 as long as none was set.
    void* GetDefaultValue();
    /// The default values of names, owned by the field, and their number. Null where an entry could
    /// not be made.
    NameSpcDefVal** GetppNameSpecificDefaultValues();
    int GetnumNSDV();

    /// Adds a set, owned by this field, of values of the stream's first field. Null when the field
    /// has 30 sets, or the name is null or longer than 29 characters. A field shows its values as
    /// texts only if it also has possible values: name them like the sets, in the same order.
    CFieldValueSet* CreateFieldValueSet(const char* name);
    int GetNumFieldValueSets();
    /// The i-th set, or the first set of that name; null if there is none.
    CFieldValueSet* GetFieldValueSet(int i);
    CFieldValueSet* GetFieldValueSet(const char* name);

private:
    friend struct mlds::Internals;
    friend struct mlds::FieldAccess;

    static constexpr int kMaxSets = 30;

    MLDS_LOCAL void Release();

    char* m_pPool;
    NameSpcDefVal** m_ppNameDefaults;
    int m_nNameDefaults;
    FieldValType m_type;
    char m_szName[51];
    char** m_ppValues;
    int m_nValues;
    std::int32_t m_nDefault;
    CStream* m_pStream;
    CFieldValueSet* m_pSets[kMaxSets];
    int m_nSets;

    std::int32_t* m_pIndex;           // the possible values by text, see mlds::NameIndex
    mlds::DerivedValues* m_pDerived;  // what names give this field, remembered
};

#endif
