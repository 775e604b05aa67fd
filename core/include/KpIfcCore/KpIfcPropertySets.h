#pragma once

#include <KpIfcCore/KpDbObjectId.h>
#include <KpIfcCore/KpErrorStatus.h>
#include <KpIfcCore/KpIfcCoreApi.h>
#include <KpIfcCore/KpIfcVariant.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// What property sets and quantities say of an object, whichever way they are attached to it.
///
///     for (const KpIfcPropertyValue& value : propertiesOf(*wall))
///         if (value.set == "Pset_WallCommon" && value.name == "IsExternal") ...
namespace KP_SDAI {

class KpIfcAttributeDefinition;
class KpIfcEntityBase;
class KpIfcModel;

/// What a value is, and what KpIfcPropertyValue::value holds of it.
enum class KpIfcPropertyValueKind : std::uint8_t {
    single,     ///< one value
    bounded,    ///< an array of two, the lower bound first; either may be without value
    enumerated, ///< an array of those chosen
    list,       ///< an array
    table,      ///< an array of two arrays: the defining values, then the defined ones
    reference,  ///< the handle of an instance
    quantity,   ///< one number
    attribute   ///< of a set whose properties are its attributes: one value, or an array of an aggregate
};
/// "single", "bounded", ...
KPIFCCORE_EXPORT const char* kindName(KpIfcPropertyValueKind kind);

/// What a number means.
struct KpIfcMeasure {
    std::string type;   ///< the defined type of the value, "IfcLengthMeasure"; "" where there is none or values differ
    KpDbObjectId unit;  ///< null where there is none
    std::string symbol; ///< of the unit: "mm", "W/(m2·K)"; "" where there is none
};

/// One value. Nothing of it points into an instance; handles are good while the model lives.
struct KpIfcPropertyValue {
    std::string set; ///< UTF-8; that of its entity where the set has no name
    /// UTF-8; of a part of a complex property or quantity with the names above it: "Layers/Core/Width".
    std::string name;
    KpIfcPropertyValueKind kind = KpIfcPropertyValueKind::single;
    /// double, int, KpIfcBoolean, KpIfcLogical, KpDbObjectId; texts and literals are KcString; arrays are
    /// KpIfcArray<KpIfcVariant>. Empty where there is no value.
    KpIfcVariant value;
    KpIfcMeasure measure;
    KpIfcMeasure definingMeasure; ///< of a table's defining values
    bool fromType = false;        ///< the object has it from its type
    KpDbObjectId setInstance;
    KpDbObjectId propertyInstance; ///< null where the value is an attribute of the set
};

/// Reads properties of many objects of one model. Looks only: nothing counts as a change, and the model may be
/// read-only. Units of the project are those that it had when this was made. One thread's at a time; the model must
/// outlive it.
class KPIFCCORE_EXPORT KpIfcPropertySets {
public:
    explicit KpIfcPropertySets(const KpIfcModel& model);
    KpIfcPropertySets(const KpIfcPropertySets&) = delete;
    KpIfcPropertySets& operator=(const KpIfcPropertySets&) = delete;
    ~KpIfcPropertySets();

    /// All values of an object of the model, set by set: those of its own sets in the order of the relations, then
    /// those of its types but for the ones that have the set name and property name of an own one. Of a type, those of
    /// its sets. None for instances of other entities, and where the model's access is not defined.
    ///
    /// Entries that a relation overrides come with the set that it relates. A unit that a value does not name is the
    /// project's for its measure. A complex property counts once in a set, so cycles end; what lies more than 64 levels
    /// deep is left out.
    std::vector<KpIfcPropertyValue> of(const KpIfcEntityBase& object);
    /// What numbers mean that an attribute holds, such as the height of a door: the type that it is declared with and
    /// the project's unit for that.
    KpIfcMeasure measureOf(const KpIfcAttributeDefinition& attribute);

private:
    class Reader;
    std::unique_ptr<Reader> m_reader;
};

/// The same for one object; none for an object of no model.
KPIFCCORE_EXPORT std::vector<KpIfcPropertyValue> propertiesOf(const KpIfcEntityBase& object);

/// Gives a property of an object, or of a type, a value. Names are UTF-8, as propertiesOf() gives them.
///
/// Where the object itself has it as a single value or quantity, that is changed; else a single value is added to the
/// object's property set of that name; where there is none, a set with the object's owner history is made, too. What
/// other objects share with this one (set, complex property or entry) is copied first, so that theirs stays. A value of
/// the type stays as well; the object's own one then hides it.
///
/// `measureType` is the defined type of the value ("IfcLengthMeasure") in any letter case. Empty keeps the type of a
/// property that has a value; quantities have theirs. The value is converted to it.
///
/// eNullEntity for an object of no model. eRefused, with what is wrong in `error`, for other instances than objects and
/// types, models that may not be written, properties of other kinds and values that do not fit. Nothing has changed
/// then.
KPIFCCORE_EXPORT KP::ErrorStatus setProperty(KpIfcEntityBase& object, std::string_view set, std::string_view property,
                                             std::string_view measureType, const KpIfcVariant& value,
                                             std::string& error);

} // namespace KP_SDAI
