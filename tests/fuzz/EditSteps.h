#pragma once

#include "Harness.h"

#include <KpIfcCore/KpIfcChangeGroup.h>
#include <KpIfcCore/KpIfcFile.h>

#include <optional>
#include <string>
#include <string_view>

/// Edits of a file, each chosen by bytes; all go through names and variants, as a tool's do.
class EditSteps {
public:
    EditSteps(KP_SDAI::KpIfcFile file, std::string_view bytes) : m_file(std::move(file)), m_decisions(bytes) {}

    bool isDone() const { return m_decisions.isDone(); }
    void next();
    /// Ends an open group, then checks what holds of every model.
    void finish();

private:
    KP_SDAI::KpIfcModel& model() { return *m_file.model(); }
    KP_SDAI::KpIfcEntityBase* instance();
    KP_SDAI::KpDbObjectId handle();
    std::string attributeOf(const KP_SDAI::KpIfcEntityBase& instance);
    KP_SDAI::KpIfcVariant value(int depth = 0);

    void put();
    void unset();
    void create();
    void eraseSome();
    void beginOrEndGroup();
    void endGroup(bool keep);
    void copy();
    void changeInPlace();
    void setOneProperty();
    void requireReadsBack();

    KP_SDAI::KpIfcFile m_file;
    Decisions m_decisions;
    std::optional<KP_SDAI::KpIfcChangeGroup> m_group;
    std::string m_before; ///< what the open group has to bring back
};
