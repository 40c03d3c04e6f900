// Tokens: the stream objects that carry field values.
#ifndef MLDS_CLASSES_TOKEN_H
#define MLDS_CLASSES_TOKEN_H

#include "mlds/field.h"
#include "mlds/streamobj.h"

/// The interface that tokens add to stream objects.
class MLDS_API CTokenBase : public CStreamObj {
public:
    /// The text of field 0.
    virtual char* GetNameField() = 0;
    /// The raw value of a field; -1 if the token has no such field.
    virtual int GetFieldValueIndex(const char* fieldName) = 0;
    virtual int GetFieldValueIndex(int i) = 0;
    /// The value of a field as text; null if the token has no such field or the value stands for
    /// no possible value. The text belongs to the field or to the token, and is valid until the
    /// next call on this token.
    virtual char* GetFieldValueString(const char* fieldName) = 0;
    virtual char* GetFieldValueString(int i) = 0;
    /// The same as GetFieldValueIndex.
    virtual int GetFieldValueInt(const char* fieldName) = 0;
    virtual int GetFieldValueInt(int i) = 0;

protected:
    explicit CTokenBase(CStream* pStream) : CStreamObj(pStream) {}
    CTokenBase(CStream* pStream, int streamIndex) : CStreamObj(pStream, streamIndex) {}
    CTokenBase(const CTokenBase&) = default;
    CTokenBase& operator=(const CTokenBase&) = default;
    ~CTokenBase() override = default;
};

/// A token: one value for every field that its stream had when the token was made.
class MLDS_API CToken final : public CTokenBase {
public:
    /// A token in no stream yet, every value 0 (defaults are not applied).
    explicit CToken(CStream* pStream);
    /// A token whose field "name" is set from the text and whose other fields are derived from
    /// it: by the field value sets that list the name, then by the name's own default values. A
    /// field none of whose sets lists the name stays 0, which reads as the first set: give it a
    /// last set named "undefined".
    CToken(CStream* pStream, const char* name);
    /// A duplicate with values of its own, in no stream.
    explicit CToken(CToken* pSource);
    /// Memberwise: the copy and its source share one set of values.
    CToken(const CToken& other);
    CToken& operator=(const CToken& other);
    /// Whoever owns a token that is in no stream may delete it.
    ~CToken() override;

    char* GetNameField() override;
    int GetFieldValueIndex(const char* fieldName) override;
    int GetFieldValueIndex(int i) override;
    char* GetFieldValueString(const char* fieldName) override;
    char* GetFieldValueString(int i) override;
    int GetFieldValueInt(const char* fieldName) override;
    int GetFieldValueInt(int i) override;

    /// Stores a value and reports the change of a token that is linked, or was. Setting field 0
    /// derives the other fields from it. Nothing happens if the token has no such field.
    void SetFieldValue(int i, int value);
    /// Converts the text by the field's type, then stores it. A text that stands for no value of
    /// the field leaves the value as it is.
    void SetFieldValue(int i, const char* text);
    void SetFieldValue(const char* fieldName, int value);
    void SetFieldValue(const char* fieldName, const char* text);
    /// Gives every field, in order, its default value.
    void ResetFieldValuesToDefault();

    /// True if both tokens belong to one stream and agree in the type and value of every field.
    bool TokenCompare(CToken* pOther);
    /// True if both tokens give the same raw value for the field; also when both lack it.
    bool TokenFieldCompare(CToken* pOther, const char* fieldName);
    /// Copies the values of the other token, as many as both have. Reports nothing.
    void TokenCopy(CToken* pSource);

    /// Class test: membership in a field value set of that name, by the field's value; without
    /// such a set, or for a one-character name, equality with the token's name. "any" is true.
    bool IsItA(const char* className);
    bool IsItA(const char* fieldName, const char* className);
    /// True if field 0 has this value.
    bool IsItA(int value);
    /// Reserved: always false.
    bool TestFieldValue(const char* fieldName, const char* value);

private:
    friend struct mlds::Internals;
    friend struct mlds::ListAccess;

    mlds::FieldSlots* m_pSlots;
    char m_szNumber[20];
    char m_szChar[2];
    std::uint16_t m_nOwners;  // variable lists that share this token as a duplicate, less one
};

#endif
