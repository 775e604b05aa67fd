#pragma once

#include <IFC2X3/Types.h>
#include <KpIfcCore/KpIfcSelect.h>

#include <cstdint>

namespace IFC2X3 {

struct SelectFacts;

/// Base of the select classes: adds to the value which alternative of the select it is.
///
/// The alternatives are numbered from 0 in schema order, nested selects flattened in place. With n of them, n stands
/// for no value and n + 1 for a handle whose alternative is not resolved yet.
class KPIFC2X3_EXPORT Select : public KP_SDAI::KpIfcSelect {
public:
    using KpIfcSelect::underlyingTypeName;

    Select(const Select&) = default;
    /// What is moved from holds nothing.
    Select(Select&& other) noexcept : KpIfcSelect(static_cast<KpIfcSelect&&>(other)), m_tag(other.m_tag) {
        other.unset();
    }
    Select& operator=(const Select&) = default;
    Select& operator=(Select&& other) noexcept {
        if (this == &other) return *this;
        KpIfcSelect::operator=(static_cast<KpIfcSelect&&>(other));
        m_tag = other.m_tag;
        other.unset();
        return *this;
    }

    /// Code of the alternative that is held, as the class's enumeration names them.
    std::int32_t tag() const { return m_tag; }
    void assign(const KpIfcSelect& other) override { *this = static_cast<const Select&>(other); }
    const char* underlyingTypeName() const override;
    bool underlyingTypeName(const KpAnsiString& name) override;
    int underlyingTypeByName(const KpAnsiString& name) const override;

protected:
    explicit Select(std::int32_t unsetTag) : m_tag(unsetTag) {}

    virtual const SelectFacts& facts() const = 0;

    /// Chooses an alternative and its kind of value; eNotHandled, and nothing changed, for a code that is none.
    KP::ErrorStatus setUnderlyingType(std::int32_t tag);
    bool setHandleD(const KpDbObjectId& handle) override;
    void setHandleOnLoad(const KpDbObjectId& handle) override;
    bool refreshSelectHandle() override;
    void unset() override;
    const char* literal(int code) const override;
    KP::ErrorStatus readTypedField(const KpAnsiString& typeName, KpSpfFilerBase* filer) override;
    KP::ErrorStatus writeTypedField(KpSpfFilerBase* filer) override;
    bool chooseByKind(KP_SDAI::KpTypeCodeKind kind) override;

    void setDouble(std::int32_t tag, double value);
    void setInt(std::int32_t tag, int value);
    void setBoolean(std::int32_t tag, KpIfcBoolean value);
    void setLogical(std::int32_t tag, KpIfcLogical value);
    void setString(std::int32_t tag, const KpAnsiString& value);
    void setEnumeration(std::int32_t tag, int code);
    void setAggregate(std::int32_t tag, const KpIfcArray<double>& values);
    void setAggregate(std::int32_t tag, const KpIfcArray<int>& values);

private:
    bool resolve();

    std::int32_t m_tag;
};

} // namespace IFC2X3
