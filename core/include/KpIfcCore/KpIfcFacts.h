#pragma once

#include <KpIfcCore/KpAnsiString.h>
#include <KpIfcCore/KpDbObjectId.h>
#include <KpIfcCore/KpIfcArray.h>
#include <KpIfcCore/KpIfcBoolean.h>
#include <KpIfcCore/KpIfcGUID.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

class KpSpfFilerBase;

/// Facts of a schema that a module carries as constant rows: how the attributes of an entity class are stored, and
/// what the dictionary objects do not hold (optional in files, abstract, unique).
namespace KP_SDAI {

class KpIfcAggr;
class KpIfcAggrImp;
class KpIfcDescriptorSlot;
class KpIfcElementCopier;
class KpIfcEntityBase;
class KpIfcEntityType;
class KpIfcInverseMembers;
class KpIfcSelect;
class KpIfcVariant;
class KpIfcVariantType;
struct KpIfcSelectDescriptors;

enum class KpIfcFieldKind : std::uint8_t {
    string,
    guid,
    real,
    integer,
    boolean,
    logical,
    enumeration,
    reference,
    select,
    aggregate,
    derived, ///< redeclared as derived: "*" in files, no value of its own
    notKept  ///< a boolean that stands in files but is neither read nor kept
};

/// Kinds of elements of aggregate attributes.
enum class KpIfcElementKind : std::uint8_t { real, integer, string, binary, reference, select };

/// An enumeration: its literals in schema order, code 0 first.
struct KpIfcEnumFacts {
    const char* name;
    int count;
    const char* const* literals; ///< `count` texts in upper case, then an empty one
    KpIfcDescriptorSlot* descriptor = nullptr;

    /// Text of a code; null for codes that are no literal's.
    const char* text(int code) const { return code >= 0 && code < count ? literals[code] : nullptr; }
    /// Code of a literal in any letter case; `count` (unset) where there is no such literal.
    int code(const char* text, std::size_t length) const {
        for (int i = 0; i < count; ++i)
            if (equalNoCase(text, length, literals[i])) return i;
        return count;
    }
};

/// How the aggregates of one class are read and written.
struct KpIfcAggrFacts {
    KpIfcElementKind element;
    bool isSet;
    void (*read)(KpSpfFilerBase& filer, KpIfcAggr& aggregate, bool optional, bool separator);
    void (*write)(KpSpfFilerBase& filer, const KpIfcAggr& aggregate, bool optional, bool separator);
    /// A new implementation without elements, on the heap.
    KpIfcAggrImp* (*create)();
    /// Brings elements that were changed in place back into the order in which the aggregate keeps them.
    void (*rearrange)(KpIfcAggr& aggregate);
    /// Makes `value` the pointer to the aggregate, typed by its family and element type.
    void (*get)(KpIfcAggr& aggregate, KpIfcVariant& value);
    /// Makes `value` the array of the elements.
    void (*toArray)(const KpIfcAggr& aggregate, KpIfcVariant& value);
    /// The descriptor of that array.
    const KpIfcVariantType& (*arrayType)();
    /// Replaces the elements of an attribute of `owner` by those of an array or aggregate of the element type, of an
    /// array of variants or, for selects, of an array of handles; bounds are not checked. False, and nothing changed,
    /// where the value is another one or an element does not convert.
    bool (*put)(KpIfcAggr& aggregate, const KpIfcVariant& value, KpIfcEntityBase& owner);
    /// Makes `to`, which is nil, a copy of an aggregate of the same class that belongs to another model.
    void (*copy)(KpIfcAggr& to, const KpIfcAggr& from, KpIfcElementCopier& copier);
    /// Removes the elements whose flag is false; there is one for each element, in the order of iteration.
    void (*keepOnly)(KpIfcAggr& aggregate, const KpIfcArray<bool>& kept);
    /// An element as a select; null for other elements.
    const KpIfcSelect& (*selectAt)(const KpIfcAggr& aggregate, std::size_t index) = nullptr;
};

/// One explicit attribute: a field of the entity's record.
struct KpIfcAttributeFacts {
    enum Flag : std::uint8_t {
        kOptional = 1,    ///< may be without a value in files
        kFirst = 2,       ///< the first field of the record
        kBinary = 4,      ///< a text that files write as a binary
        kDefinedType = 8, ///< an aggregate declared by the name of a defined type
        kUnique = 16      ///< a list or array whose elements have to be different
    };
    union Member {
        KpAnsiString KpIfcEntityBase::*string;
        KpIfcGUID KpIfcEntityBase::*guid;
        double KpIfcEntityBase::*real;
        int KpIfcEntityBase::*integer;
        KpIfcBoolean KpIfcEntityBase::*boolean;
        KpIfcLogical KpIfcEntityBase::*logical;
        KpDbObjectId KpIfcEntityBase::*reference;
        void* (*enumeration)(KpIfcEntityBase&); ///< address of the 32-bit code
        KpIfcSelect& (*select)(KpIfcEntityBase&);
        KpIfcAggr& (*aggregate)(KpIfcEntityBase&);

        constexpr Member() : string(nullptr) {}
        constexpr Member(KpAnsiString KpIfcEntityBase::*m) : string(m) {}
        constexpr Member(KpIfcGUID KpIfcEntityBase::*m) : guid(m) {}
        constexpr Member(double KpIfcEntityBase::*m) : real(m) {}
        constexpr Member(int KpIfcEntityBase::*m) : integer(m) {}
        constexpr Member(KpIfcBoolean KpIfcEntityBase::*m) : boolean(m) {}
        constexpr Member(KpIfcLogical KpIfcEntityBase::*m) : logical(m) {}
        constexpr Member(KpDbObjectId KpIfcEntityBase::*m) : reference(m) {}
        constexpr Member(void* (*m)(KpIfcEntityBase&)) : enumeration(m) {}
        constexpr Member(KpIfcSelect& (*m)(KpIfcEntityBase&)) : select(m) {}
        constexpr Member(KpIfcAggr& (*m)(KpIfcEntityBase&)) : aggregate(m) {}
    };

    const char* name; ///< as the schema spells it
    KpIfcFieldKind kind;
    std::uint8_t flags;
    std::uint16_t width; ///< bits that a binary has at most; 0 where the schema does not say
    Member member;
    KpIfcEntityType* const* target = nullptr;    ///< of references and aggregates of them: the declared entity type
    const KpIfcEnumFacts* enumeration = nullptr; ///< of enumerations
    const KpIfcAggrFacts* aggregate = nullptr;   ///< of aggregates
    KpIfcSelectDescriptors* select = nullptr;    ///< of selects
    std::uint32_t key = 0;                       ///< keyOf(name)
    std::uint32_t nameLength = 0;

    /// Tells most names apart without a look at all their characters, whatever their letter case.
    static constexpr std::uint32_t keyOf(const char* name, std::size_t length) {
        if (length == 0) return 0;
        const auto byte = [](char c) { return static_cast<std::uint32_t>(static_cast<unsigned char>(lowerAscii(c))); };
        return static_cast<std::uint32_t>(length & 0xFF) | byte(name[0]) << 8 | byte(name[length / 2]) << 16 |
               byte(name[length - 1]) << 24;
    }

    /// The code that an enumeration attribute holds. The member's type is an enumeration over int.
    int enumerationCode(KpIfcEntityBase& instance) const {
        int code;
        std::memcpy(&code, member.enumeration(instance), sizeof code);
        return code;
    }
    bool isOptional() const { return (flags & kOptional) != 0; }
    bool isFirst() const { return (flags & kFirst) != 0; }
    bool isUnique() const { return (flags & kUnique) != 0; }
};

/// One inverse attribute.
struct KpIfcInverseFacts {
    const char* name;                                  ///< as the schema spells it
    KpIfcInverseMembers& (*members)(KpIfcEntityBase&); ///< of an instance of the entity that declares it
    std::uint32_t index;                               ///< among the inverse attributes that the entity itself declares
    std::uint32_t count;                               ///< of those
    std::uint32_t key;                                 ///< KpIfcAttributeFacts::keyOf(name)
};

/// The other side of an inverse attribute: an explicit attribute through which it is referred to.
struct KpIfcCounterpartFacts {
    const KpIfcAttributeFacts* attribute;       ///< of the entity whose row this is
    KpIfcEntityType* const* declaring;          ///< the entity that declares the inverse attribute
    std::uint32_t inverse;                      ///< which of those that it declares
    KpIfcEntityType* const* referrer = nullptr; ///< the subtype whose instances alone count; null for all
};

/// A uniqueness rule: attribute names separated by blanks.
struct KpIfcUniqueFacts {
    const char* label;
    const char* attributes;
};

/// One entity class.
struct KpIfcEntityFacts {
    const char* name; ///< as the schema spells it
    bool isAbstract;
    std::uint32_t size;                                   ///< bytes of an instance
    KpIfcEntityBase* (*construct)(void* memory) noexcept; ///< makes an instance in memory of that size, aligned to 8
    const KpIfcAttributeFacts* attributes = nullptr;      ///< the explicit attributes that the entity itself declares
    std::uint32_t attributeCount = 0;
    const KpIfcAttributeFacts* record = nullptr; ///< all fields, where the entity redeclares some as derived
    std::uint32_t recordCount = 0;
    const KpIfcUniqueFacts* uniqueRules = nullptr;
    std::uint32_t uniqueRuleCount = 0;
    const KpIfcInverseFacts* inverses = nullptr; ///< the inverse attributes that the entity itself declares
    std::uint32_t inverseCount = 0;
    const KpIfcCounterpartFacts* counterparts = nullptr; ///< of explicit attributes that the entity itself declares
    std::uint32_t counterpartCount = 0;
    const KpIfcEntityFacts* supertype = nullptr;
};

} // namespace KP_SDAI
