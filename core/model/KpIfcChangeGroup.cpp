#include <KpIfcCore/KpIfcChangeGroup.h>

#include "model/ModelData.h"

#include <new>
#include <stdexcept>
#include <utility>

namespace KP_SDAI {

KpIfcChangeGroup::KpIfcChangeGroup(KpIfcModel& model) : m_model(&model) {
    model.commit(); // a rollback that is due ends the group before
    if (model.data().isNotingChanges()) throw std::logic_error("the model has an open change group already");
    model.data().beginChanges();
}

KpIfcChangeGroup::~KpIfcChangeGroup() {
    try {
        rollBack();
    } catch (const std::bad_alloc&) { // the model does it with its next commit
    }
}

void KpIfcChangeGroup::keep() {
    if (KpIfcModel* const model = std::exchange(m_model, nullptr)) model->data().keepChanges();
}

void KpIfcChangeGroup::rollBack() {
    if (m_model) m_model->data().rollBackChanges();
    m_model = nullptr;
}

} // namespace KP_SDAI
