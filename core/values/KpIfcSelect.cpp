#include <KpIfcCore/Consts.h>
#include <KpIfcCore/KpIfcSelect.h>

#include <KpIfcCore/KpIfcOrderedAggrImp.h>

#include <bit>
#include <cstring>
#include <new>
#include <utility>

namespace KP_SDAI {

void KpIfcSelect::releaseValue() noexcept {
    if (m_kind == kTypeString) m_value.text.~KpAnsiString();
    if (m_kind == kTypeAggregate) m_value.aggregate.~KpIfcAnyAggr();
    m_kind = kTypeNone;
    m_value.slot = nullptr;
}

void KpIfcSelect::assignValue(const KpIfcSelect& other) {
    if (other.m_kind == kTypeString) {
        storeString(other.m_value.text);
    } else if (other.m_kind == kTypeAggregate) {
        KpIfcAnyAggr copy(other.m_value.aggregate);
        releaseValue();
        ::new (&m_value.aggregate) KpIfcAnyAggr(std::move(copy));
        m_kind = kTypeAggregate;
    } else {
        releaseValue();
        std::memcpy(static_cast<void*>(&m_value), static_cast<const void*>(&other.m_value), sizeof m_value);
        m_kind = other.m_kind;
    }
}

void KpIfcSelect::moveValue(KpIfcSelect& other) noexcept {
    releaseValue();
    // Each member is one word that owns what it points at, so the word may move and the source forget it.
    std::memcpy(static_cast<void*>(&m_value), static_cast<const void*>(&other.m_value), sizeof m_value);
    m_kind = std::exchange(other.m_kind, static_cast<int>(kTypeNone));
}

void KpIfcSelect::nullify() {
    releaseValue();
    unset();
}

void KpIfcSelect::storeDouble(double value) {
    releaseValue();
    m_value.real = value;
    m_kind = kTypeReal;
}

void KpIfcSelect::storeInt(int value, KpTypeCodeKind kind) {
    releaseValue();
    m_value.integer = value;
    m_kind = kind;
}

void KpIfcSelect::storeBoolean(KpIfcBoolean value) {
    releaseValue();
    m_value.code = value.code();
    m_kind = kTypeBoolean;
}

void KpIfcSelect::storeLogical(KpIfcLogical value) {
    releaseValue();
    m_value.code = value.code();
    m_kind = kTypeLogical;
}

void KpIfcSelect::storeString(const KpAnsiString& value) {
    KpAnsiString copy(value); // may be this select's own
    releaseValue();
    ::new (&m_value.text) KpAnsiString(std::move(copy));
    m_kind = kTypeString;
}

void KpIfcSelect::storeAggregate(KpIfcAggrImp* value) {
    releaseValue();
    ::new (&m_value.aggregate) KpIfcAnyAggr(value);
    m_kind = kTypeAggregate;
}

void KpIfcSelect::storeHandle(const KpDbObjectId& handle) {
    releaseValue();
    m_value.slot = handle.slot();
    m_kind = kTypeEntity;
}

void KpIfcSelect::storeUnset(KpTypeCodeKind kind) {
    switch (kind) {
    case kTypeReal: return storeDouble(Consts::KpRealUnset);
    case kTypeInteger: return storeInt(Consts::KpIntUnset);
    case kTypeEnumeration: return storeInt(Consts::KpIntUnset, kTypeEnumeration);
    case kTypeBoolean: return storeBoolean(KpIfcBoolean::Unset);
    case kTypeLogical: return storeLogical(KpIfcLogical::Unset);
    case kTypeString: return storeString(KpAnsiString::unset());
    default: return storeHandle({});
    }
}

bool KpIfcSelect::chooseByKind(KpTypeCodeKind) {
    return false;
}

bool KpIfcSelect::setHandle(const KpDbObjectId& handle) {
    if (!setHandleD(handle)) return false;
    storeHandle(handle);
    return true;
}

void KpIfcSelect::setHandleOnLoad(const KpDbObjectId& handle) {
    storeHandle(handle);
}

bool KpIfcSelect::refreshSelectHandle() {
    return m_kind == kTypeEntity && setHandleD(KpDbObjectId(m_value.slot));
}

KP::ErrorStatus KpIfcSelect::readTypedField(const KpAnsiString&, KpSpfFilerBase*) {
    return KP::eNotHandled;
}

KP::ErrorStatus KpIfcSelect::writeTypedField(KpSpfFilerBase*) {
    return KP::eNotHandled;
}

bool KpIfcSelect::getHandle(KpDbObjectId& handle) const {
    if (m_kind != kTypeEntity) return false;
    handle = KpDbObjectId(m_value.slot);
    return true;
}

bool KpIfcSelect::getDouble(double& value) const {
    if (m_kind != kTypeReal) return false;
    value = m_value.real;
    return true;
}

bool KpIfcSelect::getInt(int& value) const {
    if (m_kind != kTypeInteger && m_kind != kTypeEnumeration) return false;
    value = m_value.integer;
    return true;
}

const char* KpIfcSelect::literal(int) const {
    return nullptr;
}

const char* KpIfcSelect::getLiteral() const {
    return m_kind == kTypeEnumeration ? literal(m_value.integer) : nullptr;
}

bool KpIfcSelect::getBoolean(KpIfcBoolean& value) const {
    if (m_kind != kTypeBoolean) return false;
    value = static_cast<KpIfcBoolean::Code>(m_value.code);
    return true;
}

bool KpIfcSelect::getLogical(KpIfcLogical& value) const {
    if (m_kind != kTypeLogical) return false;
    value = static_cast<KpIfcLogical::Code>(m_value.code);
    return true;
}

const KpAnsiString* KpIfcSelect::getString() const {
    return m_kind == kTypeString ? &m_value.text : nullptr;
}

const KpIfcAggr* KpIfcSelect::getAggregate() const {
    return m_kind == kTypeAggregate ? &m_value.aggregate : nullptr;
}

namespace {

template <class T>
int order(const T& a, const T& b) {
    return a < b ? -1 : b < a ? 1 : 0;
}

/// All doubles in one order, so that sets stay sound whatever they hold: by the bits, negative ones reversed.
std::int64_t orderedBits(double value) {
    const auto bits = std::bit_cast<std::int64_t>(value == 0 ? 0.0 : value);
    return bits < 0 ? std::int64_t(0x8000000000000000) - bits : bits;
}

template <class T, class Key>
int orderElements(const KpIfcAggr& a, const KpIfcAggr& b, Key key) {
    const auto& x = static_cast<const KpIfcAggrElements<T>&>(*a.implementation());
    const auto& y = static_cast<const KpIfcAggrElements<T>&>(*b.implementation());
    for (std::uint32_t i = 0; i < x.count() && i < y.count(); ++i)
        if (const int c = order(key(x.begin()[i]), key(y.begin()[i]))) return c;
    return order(x.count(), y.count());
}

int compare(const KpIfcSelect& a, const KpIfcSelect& b) {
    if (const int c = order<int>(a.valueKind(), b.valueKind())) return c;
    int c = 0;
    switch (a.valueKind()) {
    case kTypeNone: return 0;
    case kTypeEntity: {
        KpDbObjectId x, y;
        a.getHandle(x);
        b.getHandle(y);
        return order(x, y); // the alternative follows from the instance
    }
    case kTypeReal: {
        double x = 0, y = 0;
        a.getDouble(x);
        b.getDouble(y);
        c = order(orderedBits(x), orderedBits(y));
        break;
    }
    case kTypeInteger:
    case kTypeEnumeration: {
        int x = 0, y = 0;
        a.getInt(x);
        b.getInt(y);
        c = order(x, y);
        break;
    }
    case kTypeBoolean: {
        KpIfcBoolean x, y;
        a.getBoolean(x);
        b.getBoolean(y);
        c = order(x.code(), y.code());
        break;
    }
    case kTypeLogical: {
        KpIfcLogical x, y;
        a.getLogical(x);
        b.getLogical(y);
        c = order(x.code(), y.code());
        break;
    }
    case kTypeString: c = order(*a.getString(), *b.getString()); break;
    case kTypeAggregate:
        // The two aggregate alternatives differ in container and element: arrays of reals, lists of integers.
        c = order(a.getAggregate()->containerType(), b.getAggregate()->containerType());
        if (c == 0 && a.getAggregate()->containerType() == KpIfcAggrContainerType::array)
            c = orderElements<double>(*a.getAggregate(), *b.getAggregate(), orderedBits);
        else if (c == 0)
            c = orderElements<int>(*a.getAggregate(), *b.getAggregate(), [](int i) { return i; });
        break;
    default: break;
    }
    return c ? c : std::strcmp(a.underlyingTypeName(), b.underlyingTypeName());
}

} // namespace

bool operator==(const KpIfcSelect& a, const KpIfcSelect& b) {
    return compare(a, b) == 0;
}

bool operator<(const KpIfcSelect& a, const KpIfcSelect& b) {
    return compare(a, b) < 0;
}

} // namespace KP_SDAI
