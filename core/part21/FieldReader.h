#pragma once

#include "part21/RecordReader.h"

#include <KpIfcCore/KpIfcFacts.h>

#include <span>

namespace KP_SDAI {

/// Reads fields as nearly all files spell them: nothing between the tokens, values that the members hold. Whatever is
/// otherwise is left to the filer's primitives, which know all cases; what these two have in common comes out alike.
class RecordReader::FieldReader {
public:
    FieldReader(KpIfcEntityBase& instance, KpSpfFilerBase& filer) : m_instance(instance), m_filer(filer) {}

    /// False, and nothing read, where the field is none of the simple ones.
    bool read(const KpIfcAttributeFacts& row);
    /// A binary, however it is spelled; like the filer's primitives for other fields.
    void readBinary(KpAnsiString& value, bool separator);

private:
    bool readReference(const KpIfcAttributeFacts& row, const char* p);
    bool readReal(double& value, const char* p);
    bool readEnumeration(const KpIfcAttributeFacts& row, const char* p);
    bool readBoolean(KpIfcBoolean& value, const char* p);
    bool readText(KpAnsiString& value, const char* p);
    bool readGlobalId(KpIfcGUID& value, const char* p);
    bool readUnsetSelect(KpIfcSelect& value, const char* p);
    bool readAggregate(const KpIfcAttributeFacts& row, const char* p);
    bool readReferences(const KpIfcAttributeFacts& row, KpIfcAggr& aggregate, const char* p);
    bool readReals(KpIfcAggr& aggregate, const char* p);
    void take(const char* begin, const char* end);
    /// True where a name is known to be an instance's of that entity.
    bool isKnown(std::uint64_t name, const KpIfcEntityType* declared) const;

    KpIfcEntityBase& m_instance;
    KpSpfFilerBase& m_filer;
};

} // namespace KP_SDAI
