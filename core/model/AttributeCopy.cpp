#include "model/AttributeCopy.h"

#include <KpIfcCore/KpIfcEntityBase.h>
#include <KpIfcCore/KpIfcEntityType.h>
#include <KpIfcCore/KpIfcSelect.h>
#include <KpIfcCore/KpIfcVariantType.h>

#include <cstring>

namespace KP_SDAI {

namespace {

void copyAttribute(KpIfcEntityBase& to, KpIfcEntityBase& from, const KpIfcAttributeFacts& row) {
    switch (row.kind) {
    case KpIfcFieldKind::string: to.*row.member.string = from.*row.member.string; break;
    case KpIfcFieldKind::guid: to.*row.member.guid = from.*row.member.guid; break;
    case KpIfcFieldKind::real: to.*row.member.real = from.*row.member.real; break;
    case KpIfcFieldKind::integer: to.*row.member.integer = from.*row.member.integer; break;
    case KpIfcFieldKind::notKept:
    case KpIfcFieldKind::boolean: to.*row.member.boolean = from.*row.member.boolean; break;
    case KpIfcFieldKind::logical: to.*row.member.logical = from.*row.member.logical; break;
    case KpIfcFieldKind::enumeration:
        std::memcpy(row.member.enumeration(to), row.member.enumeration(from), sizeof(int));
        break;
    case KpIfcFieldKind::reference: to.*row.member.reference = from.*row.member.reference; break;
    case KpIfcFieldKind::select:
        row.select->value.value().objectMemAllocator()->assign(&row.member.select(to), &row.member.select(from));
        break;
    case KpIfcFieldKind::aggregate: {
        const KpIfcAggr& source = row.member.aggregate(from);
        KpIfcAggrImp* const imp = source.implementation();
        KpIfcAnyAggr copy(source.isNil() ? imp : imp->clone());
        row.member.aggregate(to).swap(copy);
        break;
    }
    case KpIfcFieldKind::derived: break;
    }
}

} // namespace

void copyAttributes(KpIfcEntityBase& to, const KpIfcEntityBase& from) {
    // The rows of what entities declare, not those of records, where redeclared attributes have no member.
    for (const KpIfcEntityFacts* level = to.getInstanceType()->facts(); level; level = level->supertype)
        for (std::uint32_t i = 0; i < level->attributeCount; ++i)
            copyAttribute(to, const_cast<KpIfcEntityBase&>(from), level->attributes[i]);
}

} // namespace KP_SDAI
