#include <KpIfcCore/KpIfcChangeGroup.h>

#include "model/ModelData.h"

#include <stdexcept>
#include <utility>

namespace KP_SDAI {

KpIfcChangeGroup::KpIfcChangeGroup(KpIfcModel& model) : m_model(&model) {
    if (model.data().isNotingChanges()) throw std::logic_error("the model has an open change group already");
    model.data().beginChanges();
}

KpIfcChangeGroup::~KpIfcChangeGroup() {
    rollBack();
}

void KpIfcChangeGroup::keep() {
    if (KpIfcModel* const model = std::exchange(m_model, nullptr)) model->data().keepChanges();
}

void KpIfcChangeGroup::rollBack() {
    if (KpIfcModel* const model = std::exchange(m_model, nullptr)) model->data().rollBackChanges();
}

} // namespace KP_SDAI
