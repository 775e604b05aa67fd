#include <KpIfcCore/KpIfcAggrValues.h>
#include <KpIfcCore/KpIfcModel.h>
#include <KpIfcCore/KpIfcVariant.h>
#include <KpIfcCore/KpStepText.h>
#include <KpRx/KcString.h>

#include <string>
#include <utility>

namespace KP_SDAI {

void KpIfcVariant::copy(const KpIfcVariant& other) {
    m_type = nullptr;
    if (other.ownsValue()) {
        setObject(*other.m_type, other.data());
    } else {
        m_type = other.m_type;
        std::memcpy(m_storage, other.m_storage, sizeof m_storage);
    }
}

void KpIfcVariant::setObject(const KpIfcVariantType& type, const void* value) {
    alignas(8) unsigned char storage[kInline];
    if (type.m_onHeap) {
        void* const memory = ::operator new(type.m_size);
        try {
            type.m_allocator->construct(memory, value);
        } catch (...) {
            ::operator delete(memory);
            throw;
        }
        std::memcpy(storage, &memory, sizeof memory);
    } else {
        type.m_allocator->construct(storage, value);
    }
    if (ownsValue()) destroy(); // last, for `value` may be a part of it
    m_type = &type;
    // What is held inline may move as bytes: texts and arrays are one owning pointer and numbers.
    std::memcpy(m_storage, storage, sizeof m_storage);
}

void KpIfcVariant::destroy() noexcept {
    void* const value = const_cast<void*>(data());
    m_type->m_allocator->destroy(value);
    if (m_type->m_onHeap) ::operator delete(value);
    m_type = nullptr;
}

const KpIfcVariant* KpIfcVariant::convert(const KpIfcVariantType& target, KpIfcVariant& scratch) const {
    if (m_type == &target) return this;
    if (!m_type) return nullptr;
    if (m_type->toValueType(target, *this, scratch) || target.fromValueType(*this, scratch)) return &scratch;
    return nullptr;
}

bool KpIfcVariant::toString(KcString& out, StringFormat format) const {
    return m_type && m_type->toString(out, *this, format);
}

const KpIfcVariant& detail::inModelsForm(const KpIfcVariant& value, const KpIfcEntityBase& owner,
                                         KpIfcVariant& scratch) {
    const KcString* const unicode = value.getIf<KcString>();
    const KpIfcModel* const model = owner.owningModel();
    if (!unicode || !model) return value;
    std::string encoded;
    if (!model->textIsUtf8()) KpStepText::encode(unicode->view(), encoded);
    scratch.set(KpAnsiString(model->textIsUtf8() ? unicode->view() : std::string_view(encoded)));
    return scratch;
}

} // namespace KP_SDAI
