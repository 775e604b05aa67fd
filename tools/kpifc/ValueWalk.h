#pragma once

#include <KpIfcCore/Consts.h>
#include <KpIfcCore/KpIfcAggr.h>
#include <KpIfcCore/KpIfcBoolean.h>
#include <KpIfcCore/KpIfcFacts.h>
#include <KpIfcCore/KpIfcSelect.h>
#include <KpIfcCore/KpIfcVariant.h>

#include <cmath>
#include <cstring>
#include <string_view>

namespace kpifc {

/// Tells a writer what is in an attribute value that KpIfcEntityBase::getAttr() gave. A writer has:
///
///     null()                              no value
///     real(double), integer(int)          real: also infinite or no number
///     truth(KpIfcLogical)                 of booleans too
///     text(std::string_view)              in the form in which the model holds it
///     literal(const char*)
///     reference(const KpDbObjectId&)      not null
///     beginTyped(const char*), endTyped() around the value of a select that is of a defined type
///     beginList(), nextItem(), endList()  nextItem() before every element
template <class Writer>
class ValueWalk {
public:
    explicit ValueWalk(Writer& writer) : m_writer(writer) {}

    /// `emptyIsNull`: whether an aggregate without elements is no value.
    void walk(const KP_SDAI::KpIfcVariant& value, bool emptyIsNull) {
        using namespace KP_SDAI;
        const KpIfcVariantType* type = value.type();
        if (!type) {
            m_writer.null();
        } else if (const double* real = value.getIf<double>()) {
            walk(*real);
        } else if (const char* const* text = value.getIf<const char*>()) {
            walkText(KpAnsiString::viewOf(*text));
        } else if (const KpDbObjectId* handle = value.getIf<KpDbObjectId>()) {
            walk(*handle);
        } else if (const int* integer = value.getIf<int>()) {
            walk(*integer);
        } else if (const KpIfcBoolean* boolean = value.getIf<KpIfcBoolean>()) {
            walk(*boolean);
        } else if (const KpIfcLogical* logical = value.getIf<KpIfcLogical>()) {
            walk(*logical);
        } else if (const KpIfcGUID* guid = value.getIf<KpIfcGUID>()) {
            walkText(guid->constStr());
        } else if (const KpIfcEnumFacts* enumeration = type->enumeration()) {
            int code;
            std::memcpy(&code, value.data(), sizeof code);
            walkLiteral(enumeration->text(code));
        } else if (const KpIfcSelect* select = type->select(value.data())) {
            walk(*select);
        } else if (const KpIfcAggr* aggregate = type->aggregate(value.data())) {
            emptyIsNull && aggregate->empty() ? m_writer.null() : walk(*aggregate);
        } else {
            m_writer.null();
        }
    }

private:
    void walk(double value) { value == Consts::KpRealUnset ? m_writer.null() : m_writer.real(value); }
    void walk(int value) { value == Consts::KpIntUnset ? m_writer.null() : m_writer.integer(value); }
    void walk(KP_SDAI::KpIfcBoolean value) {
        value.isSet() ? m_writer.truth(KP_SDAI::KpIfcLogical(value.isTrue())) : m_writer.null();
    }
    void walk(KP_SDAI::KpIfcLogical value) { value.isSet() ? m_writer.truth(value) : m_writer.null(); }
    void walk(const KP_SDAI::KpAnsiString& value) { walkText(value.view()); }
    void walk(const KP_SDAI::KpDbObjectId& value) { value.isNull() ? m_writer.null() : m_writer.reference(value); }
    void walkText(std::string_view value) {
        value == std::string_view(Consts::KpStringUnset, Consts::KpStringUnsetLength) ? m_writer.null()
                                                                                      : m_writer.text(value);
    }
    void walkLiteral(const char* value) { value ? m_writer.literal(value) : m_writer.null(); }

    void walk(const KP_SDAI::KpIfcSelect& select) {
        KP_SDAI::KpDbObjectId handle;
        if (select.isNull()) {
            m_writer.null();
        } else if (select.getHandle(handle)) {
            walk(handle);
        } else {
            m_writer.beginTyped(select.underlyingTypeName());
            walkTyped(select);
            m_writer.endTyped();
        }
    }

    void walkTyped(const KP_SDAI::KpIfcSelect& select) {
        double real = 0;
        int integer = 0;
        KP_SDAI::KpIfcBoolean boolean;
        KP_SDAI::KpIfcLogical logical;
        if (select.getDouble(real)) {
            walk(real);
        } else if (select.valueKind() == KP_SDAI::kTypeEnumeration) {
            walkLiteral(select.getLiteral());
        } else if (select.getInt(integer)) {
            walk(integer);
        } else if (select.getBoolean(boolean)) {
            walk(boolean);
        } else if (select.getLogical(logical)) {
            walk(logical);
        } else if (const KP_SDAI::KpAnsiString* text = select.getString()) {
            walk(*text);
        } else if (const KP_SDAI::KpIfcAggr* aggregate = select.getAggregate()) {
            walk(*aggregate);
        } else {
            m_writer.null();
        }
    }

    void walk(const KP_SDAI::KpIfcAggr& aggregate) {
        using namespace KP_SDAI;
        const KpIfcVariantType* type = aggregate.implementation()->elementType();
        if (type == &KpIfcVariantType::Desc<double>::value()) {
            elements<double>(aggregate);
        } else if (type == &KpIfcVariantType::Desc<KpDbObjectId>::value()) {
            elements<KpDbObjectId>(aggregate);
        } else if (type == &KpIfcVariantType::Desc<int>::value()) {
            elements<int>(aggregate);
        } else if (type == &KpIfcVariantType::Desc<KpAnsiString>::value()) {
            elements<KpAnsiString>(aggregate);
        } else {
            selects(aggregate);
        }
    }

    template <class T>
    void elements(const KP_SDAI::KpIfcAggr& aggregate) {
        m_writer.beginList();
        for (const T& element : static_cast<const KP_SDAI::KpIfcAggrElements<T>&>(*aggregate.implementation())) {
            m_writer.nextItem();
            walk(element);
        }
        m_writer.endList();
    }

    void selects(const KP_SDAI::KpIfcAggr& aggregate) {
        m_writer.beginList();
        KP_SDAI::KpIfcVariant element;
        for (std::size_t i = 0; aggregate.implementation()->getElement(i, element); ++i) {
            m_writer.nextItem();
            walk(element, false);
        }
        m_writer.endList();
    }

    Writer& m_writer;
};

} // namespace kpifc
