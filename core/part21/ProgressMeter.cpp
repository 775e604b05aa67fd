#include "part21/ProgressMeter.h"

namespace KP_SDAI {

void ProgressMeter::tell() {
    if (!m_function) return;
    m_next = Clock::now() + std::chrono::milliseconds(20);
    if (!m_function(m_progress)) throw Cancelled();
}

const char* stageName(KpIfcStage stage) {
    switch (stage) {
    case KpIfcStage::reading: return "reading";
    case KpIfcStage::linking: return "references";
    case KpIfcStage::inverses: return "inverse attributes";
    case KpIfcStage::locating: return "lines of findings";
    case KpIfcStage::checking: return "checking";
    case KpIfcStage::writing: return "writing";
    case KpIfcStage::flushing: return "flushing";
    }
    return "";
}

} // namespace KP_SDAI
