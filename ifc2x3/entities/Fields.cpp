#include "entities/EntityClass.h"

#include <KpIfcCore/KpIfcEntityType.h>
#include <KpIfcCore/KpIfcRecordFields.h>

namespace IFC2X3 {

namespace {

/// The rows of a whole record in order, table by table.
template <class Visitor>
void eachTable(const KpIfcEntityFacts* facts, Visitor visit) {
    while (facts && !facts->record && !facts->attributeCount) facts = facts->supertype;
    if (!facts) return;
    if (facts->record) return visit(std::span(facts->record, facts->recordCount));
    eachTable(facts->supertype, visit);
    visit(std::span(facts->attributes, facts->attributeCount));
}

} // namespace

KP::ErrorStatus readFields(KpIfcEntityBase& instance, KpSpfFilerBase& filer, const KpIfcEntityFacts& facts) {
    eachTable(&facts, [&](auto rows) { KP_SDAI::readRecordFields(instance, filer, rows); });
    return KP::eOk;
}

KP::ErrorStatus writeFields(KpIfcEntityBase& instance, KpSpfFilerBase& filer, const KpIfcEntityFacts& facts) {
    eachTable(&facts, [&](auto rows) { KP_SDAI::writeRecordFields(instance, filer, rows); });
    return KP::eOk;
}

bool isNamed(const KpIfcEntityType* type, const char* name) {
    return type && name && KP_SDAI::compareNoCase(type->name(), name) == 0;
}

} // namespace IFC2X3
