#include "EditSteps.h"

#include "Models.h"

#include <KpIfcCore/KpIfcAggr.h>
#include <KpIfcCore/KpIfcAttributeDefinition.h>
#include <KpIfcCore/KpIfcCopy.h>
#include <KpIfcCore/KpIfcEntityType.h>
#include <KpIfcCore/KpIfcErase.h>
#include <KpIfcCore/KpIfcPropertySets.h>
#include <KpIfcCore/KpIfcSelect.h>
#include <KpIfcCore/KpIfcVariant.h>

#include <array>
#include <cstring>
#include <limits>
#include <vector>

using namespace KP_SDAI;

KpDbObjectId EditSteps::handle() {
    const KpIfcArray<KpDbObjectId> all = model().fileOrder();
    const std::size_t which = m_decisions.below(256);
    return all.isEmpty() || which == 255 ? KpDbObjectId() : all[static_cast<std::uint32_t>(which % all.size())];
}

KpIfcEntityBase* EditSteps::instance() {
    return handle().openObject();
}

std::string EditSteps::attributeOf(const KpIfcEntityBase& instance) {
    const std::vector<const KpIfcAttributeDefinition*> all = instance.getInstanceType()->allAttributes();
    return all.empty() ? "" : all[m_decisions.below(256) % all.size()]->name();
}

KpIfcVariant EditSteps::value(int depth) {
    const auto text = [&] { return KpAnsiString(m_decisions.text(m_decisions.below(12))); };
    const auto real = [&] {
        constexpr std::array kReals{0.0,
                                    -0.0,
                                    1.5,
                                    -1e300,
                                    5e-324,
                                    std::numeric_limits<double>::infinity(),
                                    std::numeric_limits<double>::quiet_NaN()};
        return kReals[m_decisions.below(kReals.size())];
    };
    const auto listOf = [&](auto one) {
        KpIfcArray<decltype(one())> all;
        for (std::size_t n = m_decisions.below(5); n > 0; --n) {
            all.append(one());
        }
        return KpIfcVariant(all);
    };
    switch (m_decisions.below(depth > 2 ? 7 : 12)) {
    case 0: return text();
    case 1: return real();
    case 2: return static_cast<int>(m_decisions.byte()) - 128;
    case 3: return handle();
    case 4: return KpIfcBoolean(m_decisions.below(2) != 0);
    case 5: return KpIfcLogical(KpIfcLogical::Unknown);
    case 6: { // what another attribute holds, of whatever type
        KpIfcVariant held;
        if (KpIfcEntityBase* const other = instance()) {
            other->getAttr(attributeOf(*other).c_str(), held);
        }
        return held;
    }
    case 7: return listOf([&] { return handle(); });
    case 8: return listOf(real);
    case 9: return listOf([&] { return static_cast<int>(m_decisions.byte()); });
    case 10: return listOf(text);
    default: return listOf([&] { return value(depth + 1); });
    }
}

void EditSteps::put() {
    if (KpIfcEntityBase* const changed = instance()) {
        const std::string name = attributeOf(*changed);
        changed->putAttr(name.c_str(), value());
    }
}

void EditSteps::unset() {
    if (KpIfcEntityBase* const changed = instance()) {
        changed->unsetAttr(attributeOf(*changed).c_str());
    }
}

void EditSteps::create() {
    const auto& entities = model().schema().entities().entries();
    const std::string& name = entities[m_decisions.below(65535) % entities.size()].name;
    const std::size_t wanted = m_decisions.below(256);
    if (m_decisions.below(2)) {
        model().createRooted(name, wanted);
    } else {
        model().create(name, wanted);
    }
}

void EditSteps::eraseSome() {
    const auto policy = static_cast<KpIfcErasePolicy>(m_decisions.below(3));
    std::vector<KpDbObjectId> handles;
    for (std::size_t n = m_decisions.below(4); n > 0; --n) {
        handles.push_back(handle());
    }
    const bool mayRefuse = policy == KpIfcErasePolicy::refuse;
    const std::string before = mayRefuse ? written(m_file, false) : "";
    if (erase(model(), handles, policy).status != KP::eOk && mayRefuse) {
        requireSame(written(m_file, false), before, "what is not erased stays");
    }
}

void EditSteps::beginOrEndGroup() {
    if (m_group) {
        return endGroup(m_decisions.below(2) != 0);
    }
    m_before = written(m_file, false) + written(m_file, true);
    m_group.emplace(model());
}

void EditSteps::endGroup(bool keep) {
    if (keep) {
        m_group->keep();
    } else {
        m_group->rollBack();
        requireSame(written(m_file, false) + written(m_file, true), m_before, "what is undone leaves no trace");
    }
    m_group.reset();
}

void EditSteps::copy() {
    KpIfcFile target;
    require(target.create("IFC2X3") == KP::eOk, "a file can be begun");
    if (m_decisions.below(2)) {
        target.model()->create("IfcWall", m_decisions.below(32));
    }
    KpIfcCopier copier(model(), *target.model());
    for (std::size_t n = m_decisions.below(4); n > 0; --n) {
        const KpDbObjectId original = handle();
        const bool isCopied = copier.copy(original) == KP::eOk;
        require(isCopied == original.isDefined(), "what there is can be copied");
        require(isCopied == copier.copyOf(original).isDefined(), "a copy has a handle");
    }
    requireTrueIndexes(*target.model());
    const std::string text = writtenRecords(target);
    KpIfcFile again = reopened(written(target, false));
    requireSame(writtenRecords(again), text, "copies read back");
}

/// Through the pointers to members that reading by name hands out.
void EditSteps::changeInPlace() {
    KpIfcEntityBase* const changed = instance();
    if (!changed) {
        return;
    }
    const std::string name = attributeOf(*changed);
    const KpIfcVariant given = value(3);
    KpIfcVariant held;
    if (changed->getInstanceType()->findAttribute(name)->kind() != KpIfcAttributeKind::explicitAttribute ||
        !changed->getAttr(name.c_str(), held) || held.isEmpty()) {
        return;
    }
    if (KpIfcAggr* const aggregate = held.type()->aggregate(held.data())) {
        if (m_decisions.below(2)) {
            aggregate->addValue(given);
        } else {
            aggregate->clear();
        }
    } else if (KpIfcSelect* const select = held.type()->select(held.data())) {
        if (m_decisions.below(4) == 0) {
            select->nullify();
        } else if (const KpDbObjectId* const referred = given.getIf<KpDbObjectId>()) {
            select->setHandle(*referred);
        } else {
            select->putValue(given);
        }
    }
}

void EditSteps::setOneProperty() {
    constexpr std::array kNames{"S", "P", "C", "C/P", "E", "", "it's"};
    constexpr std::array kTypes{"", "IfcLabel", "IfcReal", "IfcBoolean", "IfcLengthMeasure"};
    KpIfcEntityBase* const object = instance();
    if (!object) {
        return;
    }
    const char* const set = kNames[m_decisions.below(kNames.size())];
    const char* const property = kNames[m_decisions.below(kNames.size())];
    const char* const type = kTypes[m_decisions.below(kTypes.size())];
    std::string error;
    const bool isSet = setProperty(*object, set, property, type, value(3), error) == KP::eOk;
    require(isSet == error.empty(), "a refusal has a reason");
}

void EditSteps::next() {
    switch (m_decisions.below(12)) {
    case 0: return beginOrEndGroup();
    case 1: return create();
    case 2: return eraseSome();
    case 3: return unset();
    case 4: return copy();
    case 5: return setOneProperty();
    case 6: return requireReadsBack();
    case 7: return model().commit();
    case 8: return changeInPlace();
    case 9: return requireTrueIndexes(model());
    default: return put();
    }
}

void EditSteps::requireReadsBack() {
    const std::string expected = writtenRecords(m_file);
    for (const bool normalised : {false, true}) {
        KpIfcFile again = reopened(written(m_file, normalised));
        requireSame(writtenRecords(again), expected, "what was saved reads back as what it was");
        require(again.model()->count() == model().count(), "all instances come back");
    }
}

void EditSteps::finish() {
    if (m_group) {
        endGroup(m_decisions.below(2) != 0);
    }
    requireTrueIndexes(model());
    requireReadsBack();
}
