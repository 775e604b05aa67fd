#include "entities/EntityClass.h"

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

KP::ErrorStatus Entity::inFields(KpSpfFilerBase* filer) {
    eachTable(&classFacts(), [&](auto rows) { KP_SDAI::readRecordFields(*this, *filer, rows); });
    return KP::eOk;
}

KP::ErrorStatus Entity::outFields(KpSpfFilerBase* filer) {
    eachTable(&classFacts(), [&](auto rows) { KP_SDAI::writeRecordFields(*this, *filer, rows); });
    return KP::eOk;
}

} // namespace IFC2X3
