#pragma once

#include <KpIfcCore/KpAnsiString.h>
#include <KpIfcCore/KpDbObjectId.h>
#include <KpIfcCore/KpErrorStatus.h>
#include <KpIfcCore/KpIfcAggr.h>
#include <KpIfcCore/KpIfcBoolean.h>
#include <KpIfcCore/KpIfcCoreApi.h>

#include <cstdint>

class KpSpfFilerBase;

namespace KP_SDAI {

class KpIfcNameType;
class KpIfcSelectConversion;
class KpIfcVariant;

/// Kinds of values and of dictionary types.
enum KpTypeCodeKind : int {
    kTypeNone = 0,
    kTypeInteger = 2,
    kTypeReal = 6,
    kTypeBoolean = 7,
    kTypeLogical = 8,
    kTypeBinary = 11,
    kTypeString = 12,
    kTypeEntity = 13,
    kTypeSelect = 14,
    kTypeEnumeration = 15,
    kTypeAggregate = 16
};

/// An aggregate that stands alone, whatever its element type: the value of a select's aggregate alternative.
class KpIfcAnyAggr : public KpIfcAggr {
public:
    explicit KpIfcAnyAggr(KpIfcAggrImp* imp) : KpIfcAggr(imp) {}
    KpIfcAnyAggr(const KpIfcAnyAggr& other) : KpIfcAggr(other.isNil() ? other.m_imp : other.m_imp->clone()) {}
    KpIfcAnyAggr(KpIfcAnyAggr&& other) noexcept : KpIfcAggr(other.m_imp) { other.m_imp = nullptr; }
    ~KpIfcAnyAggr() = default;
};

/// Base of every select class: holds one value of one of several types.
///
/// The base keeps the value and its kind; the class of the select adds which of its alternatives the value is. A
/// handle read from a file may be held before its alternative is known; it is resolved by the end of reading.
class KPIFCCORE_EXPORT KpIfcSelect {
public:
    KpIfcSelect() noexcept {}
    KpIfcSelect(const KpIfcSelect& other) { assignValue(other); }
    KpIfcSelect(KpIfcSelect&& other) noexcept { moveValue(other); }
    virtual ~KpIfcSelect() {
        if (ownsMemory()) releaseValue();
    }
    KpIfcSelect& operator=(const KpIfcSelect& other) {
        if (this != &other) assignValue(other);
        return *this;
    }
    KpIfcSelect& operator=(KpIfcSelect&& other) noexcept {
        if (this != &other) moveValue(other);
        return *this;
    }

    /// The select's dictionary type.
    virtual KpIfcNameType* type() const = 0;
    /// Name of the alternative that is held, as the schema spells it; "" where there is none.
    virtual const char* underlyingTypeName() const = 0;
    /// Chooses an alternative by name and clears the value; false, and nothing changed, where there is no such one.
    virtual bool underlyingTypeName(const KpAnsiString& name) = 0;
    /// Code of the alternative of that name in any letter case; the number of alternatives where there is none.
    virtual int underlyingTypeByName(const KpAnsiString& name) const = 0;

    /// What kind of value is held; kTypeNone where none is.
    KpTypeCodeKind valueKind() const { return static_cast<KpTypeCodeKind>(m_kind); }
    bool isNull() const { return m_kind == kTypeNone; }
    /// Back to no value and no alternative.
    void nullify();

    /// Holds a handle. False, and nothing changed, where it refers to no instance of any alternative.
    bool setHandle(const KpDbObjectId& handle);

    /// The value as each kind holds it; false where another kind is held. Values may be the unset markers.
    bool getHandle(KpDbObjectId& handle) const;
    bool getDouble(double& value) const;
    bool getInt(int& value) const; ///< an integer, or the code of an enumeration
    bool getBoolean(KpIfcBoolean& value) const;
    bool getLogical(KpIfcLogical& value) const;
    /// The literal of an enumeration; null where none is held.
    const char* getLiteral() const;
    const KpAnsiString* getString() const; ///< null where no text is held
    const KpIfcAggr* getAggregate() const; ///< null where no aggregate is held

    /// What is held: double, int, KpIfcBoolean, KpIfcLogical, const char* (a text or a literal), KpDbObjectId or
    /// KpIfcAggr*, the pointers into this select. False where nothing is.
    bool getValue(KpIfcVariant& value) const;
    /// Stores a value as the alternative that is chosen, converted where needed. False, and nothing changed, where none
    /// is chosen or the value does not convert.
    ///
    ///     select.underlyingTypeName("IfcLabel") && select.putValue("Oak")
    bool putValue(const KpIfcVariant& value);
    /// Takes over what a select of the same class holds, its alternative included.
    virtual void assign(const KpIfcSelect& other) { assignValue(other); }
    /// Takes over what another select holds, by the name of its alternative. False where this one has no such
    /// alternative; then it holds nothing that counts.
    bool take(const KpIfcSelect& other);

    /// Equal alternatives and values; handles compare as handles.
    friend KPIFCCORE_EXPORT bool operator==(const KpIfcSelect& a, const KpIfcSelect& b);
    /// A strict order of all selects: by kind, then value, then alternative.
    friend KPIFCCORE_EXPORT bool operator<(const KpIfcSelect& a, const KpIfcSelect& b);

protected:
    friend class ::KpSpfFilerBase;
    friend class KpIfcSelectConversion;
    friend class FieldCopier;

    /// Chooses the one alternative whose values are of a kind; false, and nothing changed, where there is none or more
    /// than one.
    virtual bool chooseByKind(KpTypeCodeKind kind);
    /// Resolves the alternative from the instance that a handle refers to; false where none fits.
    virtual bool setHandleD(const KpDbObjectId& handle) = 0;
    /// Holds a handle whose alternative is resolved later.
    virtual void setHandleOnLoad(const KpDbObjectId& handle);
    /// Resolves a handle that was held on load; false where no alternative fits (it stays unresolved).
    virtual bool refreshSelectHandle();
    virtual void unset() = 0;
    /// The literal of a code of the enumeration that is held; null for no literal's code.
    virtual const char* literal(int code) const;
    /// Reads or writes the value of an alternative that is an aggregate; eNotHandled for any other.
    virtual KP::ErrorStatus readTypedField(const KpAnsiString& typeName, KpSpfFilerBase* filer);
    virtual KP::ErrorStatus writeTypedField(KpSpfFilerBase* filer);

    /// Typed stores: replace the value and its kind, whatever the alternative.
    void storeDouble(double value);
    void storeInt(int value, KpTypeCodeKind kind = kTypeInteger);
    void storeBoolean(KpIfcBoolean value);
    void storeLogical(KpIfcLogical value);
    void storeString(const KpAnsiString& value);
    void storeAggregate(KpIfcAggrImp* value); ///< takes it over
    void storeHandle(const KpDbObjectId& handle);
    /// No value yet, of a kind that is known.
    void storeUnset(KpTypeCodeKind kind);
    /// The text, to be read into; only where one is held.
    KpAnsiString& text() { return m_value.text; }

private:
    union Value {
        KpIfcSlot* slot;
        double real;
        int integer;
        std::uint8_t code;
        KpAnsiString text;
        KpIfcAnyAggr aggregate;
        Value() noexcept : slot(nullptr) {}
        ~Value() {}
    };

    bool ownsMemory() const { return m_kind == kTypeString || m_kind == kTypeAggregate; }
    void releaseValue() noexcept;
    void assignValue(const KpIfcSelect& other);
    void moveValue(KpIfcSelect& other) noexcept;

    Value m_value;
    int m_kind = kTypeNone;
};

} // namespace KP_SDAI
