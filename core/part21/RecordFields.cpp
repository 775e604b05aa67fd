#include <KpIfcCore/KpIfcRecordFields.h>

#include "part21/FieldReader.h"
#include "part21/FieldWriter.h"

#include <KpIfcCore/KpIfcAggr.h>
#include <KpIfcCore/KpIfcGUID.h>
#include <KpIfcCore/KpSpfFilerBase.h>

#include <cstring>

namespace KP_SDAI {

namespace {

void readEnumeration(KpSpfFilerBase& filer, void* member, const KpIfcAttributeFacts& row) {
    const std::string_view literal = filer.rdEnumeration(row.isOptional(), !row.isFirst());
    const int code = literal.empty() ? row.enumeration->count : row.enumeration->code(literal.data(), literal.size());
    if (!literal.empty() && code == row.enumeration->count) filer.unknownLiteral();
    std::memcpy(member, &code, sizeof code);
}

void readAggregate(KpSpfFilerBase& filer, KpIfcAggr& aggregate, const KpIfcAttributeFacts& row) {
    row.aggregate->read(filer, aggregate, row.isOptional(), !row.isFirst());
    if (!row.target) return;
    const auto& elements = static_cast<const KpIfcAggrElements<KpDbObjectId>&>(*aggregate.implementation());
    for (const KpDbObjectId& element : elements) filer.checkReference(element, *row.target);
}

bool isBinary(const KpIfcAttributeFacts& row) {
    return row.flags & KpIfcAttributeFacts::kBinary;
}

void readField(KpIfcEntityBase& instance, KpSpfFilerBase& filer, const KpIfcAttributeFacts& row) {
    const bool optional = row.isOptional();
    const bool separator = !row.isFirst();
    switch (row.kind) {
    case KpIfcFieldKind::string: filer.rdKpAnsiString(instance.*row.member.string, optional, separator); break;
    case KpIfcFieldKind::guid: {
        KpIfcGUID& guid = instance.*row.member.guid;
        filer.rdLimitedString(guid.chars(), KpIfcGUID::kLength, false, separator);
        break;
    }
    case KpIfcFieldKind::real: filer.rdDouble(instance.*row.member.real, optional, separator); break;
    case KpIfcFieldKind::integer: filer.rdInt(instance.*row.member.integer, optional, separator); break;
    case KpIfcFieldKind::boolean: filer.rdPrimitive(instance.*row.member.boolean, optional, separator); break;
    case KpIfcFieldKind::logical: filer.rdPrimitive(instance.*row.member.logical, optional, separator); break;
    case KpIfcFieldKind::enumeration: readEnumeration(filer, row.member.enumeration(instance), row); break;
    case KpIfcFieldKind::reference: {
        KpDbObjectId& handle = instance.*row.member.reference;
        filer.rdReference(handle, separator);
        filer.checkReference(handle, *row.target);
        break;
    }
    case KpIfcFieldKind::select: filer.rdSelect(row.member.select(instance), optional, separator); break;
    case KpIfcFieldKind::aggregate: readAggregate(filer, row.member.aggregate(instance), row); break;
    case KpIfcFieldKind::derived: filer.rdDerive(separator); break;
    case KpIfcFieldKind::notKept: filer.rdNotKept(separator); break;
    }
}

} // namespace

void readRecordFields(KpIfcEntityBase& instance, KpSpfFilerBase& filer, std::span<const KpIfcAttributeFacts> rows) {
    RecordReader::FieldReader reader(instance, filer);
    for (const KpIfcAttributeFacts& row : rows) {
        if (reader.read(row)) continue;
        if (row.kind == KpIfcFieldKind::string && isBinary(row))
            reader.readBinary(instance.*row.member.string, !row.isFirst());
        else
            readField(instance, filer, row);
    }
}

void writeRecordFields(KpIfcEntityBase& instance, KpSpfFilerBase& filer, std::span<const KpIfcAttributeFacts> rows) {
    const RecordWriter::FieldWriter writer(filer);
    for (const KpIfcAttributeFacts& row : rows) {
        const bool optional = row.isOptional();
        const bool separator = !row.isFirst();
        switch (row.kind) {
        case KpIfcFieldKind::string:
            if (isBinary(row))
                writer.writeBinary(instance.*row.member.string, separator);
            else
                filer.wrKpAnsiString(instance.*row.member.string, optional, separator);
            break;
        case KpIfcFieldKind::guid: {
            const KpIfcGUID& guid = instance.*row.member.guid;
            filer.wrLimitedString(guid.constStr(), KpIfcGUID::kLength, false, separator);
            break;
        }
        case KpIfcFieldKind::real: filer.wrDouble(instance.*row.member.real, optional, separator); break;
        case KpIfcFieldKind::integer: filer.wrInt(instance.*row.member.integer, optional, separator); break;
        case KpIfcFieldKind::boolean: filer.wrPrimitive(instance.*row.member.boolean, optional, separator); break;
        case KpIfcFieldKind::logical: filer.wrPrimitive(instance.*row.member.logical, optional, separator); break;
        case KpIfcFieldKind::enumeration:
            filer.wrEnumeration(row.enumeration->text(row.enumerationCode(instance)), separator);
            break;
        case KpIfcFieldKind::reference: writer.writeReference(instance.*row.member.reference, separator); break;
        case KpIfcFieldKind::select: filer.wrSelect(row.member.select(instance), optional, separator); break;
        case KpIfcFieldKind::aggregate:
            if (!writer.writeAggregate(*row.aggregate, row.member.aggregate(instance), optional, separator))
                row.aggregate->write(filer, row.member.aggregate(instance), optional, separator);
            break;
        case KpIfcFieldKind::derived: filer.wrDerive(separator); break;
        case KpIfcFieldKind::notKept: // an empty binary, so that the record keeps its number of fields
            if (separator) filer.wrChar(',');
            filer.wrChar('"');
            filer.wrChar('"');
            break;
        }
    }
}

} // namespace KP_SDAI
