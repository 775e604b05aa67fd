#pragma once

#include <KpIfcCore/KpDbObjectId.h>
#include <KpIfcCore/KpIfcModel.h>

#include <string_view>
#include <vector>

namespace KP_SDAI {

class KpIfcEntityType;

/// What a model that was opened lazily knows of the records that have not been read yet. A slot's word tells which one
/// it stands for; what else it means is known here only.
class UnreadRecords {
public:
    virtual ~UnreadRecords() = default;

    /// The entity of the instance of an unread slot.
    virtual const KpIfcEntityType* entityOf(const KpIfcSlot& slot) const = 0;
    /// True where so much has been read one by one that reading all costs less from here on.
    virtual bool areMostlyRead() const = 0;
    /// True while read() is at work, which then is called for what it needs.
    virtual bool isReading() const = 0;
    /// Reads the record of an unread slot and puts its instance there; null where only reading all can tell what it is.
    /// Throws as KpIfcOpenOptions::lazy says; then the slot is as it was.
    virtual KpIfcEntityBase* read(KpIfcSlot& slot) = 0;
    /// All that may have a GlobalId, read or not: those that have it are among them.
    /// How many instances there are of each entity of which there are any, read ones included.
    virtual std::vector<KpIfcEntityCount> entityCounts() const = 0;
    virtual std::vector<KpDbObjectId> mayHaveGlobalId(std::string_view globalId) const = 0;
    /// Reads the file as if nothing had been read, by ModelData::readAnew(). Throws; then all is as it was.
    virtual void readAll() = 0;
};

} // namespace KP_SDAI
