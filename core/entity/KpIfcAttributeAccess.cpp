#include <KpIfcCore/KpIfcAttributeAccess.h>

#include <KpIfcCore/KpIfcEntityType.h>
#include <KpIfcCore/KpIfcInverseMembers.h>
#include <KpIfcCore/TextEncodeDecode.h>
#include <KpRx/KcString.h>

namespace KP_SDAI {

namespace {

/// Calls `visit` with the facts of an instance's entity and its supertypes until it answers true.
template <class Visit>
bool anyLevel(const KpIfcEntityBase& instance, Visit visit) {
    const KpIfcEntityType* type = instance.getInstanceType();
    for (const KpIfcEntityFacts* level = type ? type->facts() : nullptr; level; level = level->supertype)
        if (visit(*level)) return true;
    return false;
}

} // namespace

const KpIfcVariant& inModelsForm(const KpIfcVariant& value, const KpIfcEntityBase& owner, KpIfcVariant& scratch) {
    const KcString* const unicode = value.getIf<KcString>();
    if (!unicode) return value;
    KpAnsiString text;
    TextEncodeDecode().encodeText(*unicode, text, codecOf(owner));
    scratch.set(text);
    return scratch;
}

const KpIfcAttributeFacts* findAttributeFacts(const KpIfcEntityBase& instance, std::string_view name) {
    const KpIfcAttributeFacts* found = nullptr;
    anyLevel(instance, [&](const KpIfcEntityFacts& level) {
        for (std::uint32_t i = 0; i < level.attributeCount && !found; ++i)
            if (equalNoCase(name.data(), name.size(), level.attributes[i].name)) found = &level.attributes[i];
        return found != nullptr;
    });
    return found;
}

bool peekAttribute(const KpIfcEntityBase& instance, std::string_view name, KpIfcVariant& value) {
    const KpIfcAttributeFacts* row = findAttributeFacts(instance, name);
    if (row) readAttribute(const_cast<KpIfcEntityBase&>(instance), *row, value);
    return row != nullptr;
}

bool peekInverse(const KpIfcEntityBase& instance, std::string_view name, KpIfcArray<KpDbObjectId>& referrers) {
    return anyLevel(instance, [&](const KpIfcEntityFacts& level) {
        for (std::uint32_t i = 0; i < level.inverseCount; ++i) {
            const KpIfcInverseFacts& row = level.inverses[i];
            if (!equalNoCase(name.data(), name.size(), row.name)) continue;
            row.members(const_cast<KpIfcEntityBase&>(instance)).copyTo(instance, row.index, referrers);
            return true;
        }
        return false;
    });
}

} // namespace KP_SDAI
