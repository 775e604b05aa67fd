#include <KpIfcCore/Consts.h>
#include <KpIfcCore/KpIfcGUID.h>
#include <KpIfcCore/KpSpfFilerBase.h>
#include <KpIfcCore/KpStepText.h>

#include "model/ModelData.h"
#include "part21/Digits.h"
#include "part21/Scan.h"

#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>
#include <type_traits>

using namespace KP_SDAI;

namespace {

/// As memcpy does, without a call for what is short, as nearly all is.
void copyText(char* to, const char* from, std::size_t size) {
    const auto copy = [&]<std::size_t bytes>(std::integral_constant<std::size_t, bytes>) {
        std::size_t i = 0;
        for (; i + bytes < size; i += bytes) std::memcpy(to + i, from + i, bytes);
        std::memcpy(to + size - bytes, from + size - bytes, bytes); // may overlap those before
    };
    if (size > 64)
        std::memcpy(to, from, size);
    else if (size >= 16)
        copy(std::integral_constant<std::size_t, 16>());
    else if (size >= 4)
        copy(std::integral_constant<std::size_t, 4>());
    else
        for (std::size_t i = 0; i < size; ++i) to[i] = from[i];
}

} // namespace

void KpSpfFilerBase::makeRoom(std::size_t bytes) {
    m_buffer.resize(m_buffer.size() * 2 + bytes + 4096);
}

void KpSpfFilerBase::put(std::string_view text) {
    copyText(room(text.size()), text.data(), text.size());
    m_written += text.size();
}

void KpSpfFilerBase::putInt(std::int64_t value) {
    char* to = room(24);
    m_written += static_cast<std::size_t>(std::to_chars(to, to + 24, value).ptr - to);
}

/// Names are half of what most files consist of: eight digits at once, those in front that are zeros shifted out.
void KpSpfFilerBase::putName(std::uint64_t name) {
    constexpr std::uint64_t kEightDigits = 100'000'000;
    char* const to = room(24);
    *to = '#';
    if (std::endian::native != std::endian::little || name == 0 || name >= kEightDigits) {
        m_written += static_cast<std::size_t>(std::to_chars(to + 1, to + 24, name).ptr - to);
        return;
    }
    const std::uint64_t digits = eightDigits(name);
    const int zeros = std::countr_zero(digits) / 8;
    const std::uint64_t text = (digits | kZeros) >> (8 * zeros);
    std::memcpy(to + 1, &text, sizeof text);
    m_written += static_cast<std::size_t>(9 - zeros);
}

void KpSpfFilerBase::putReal(double value) {
    if (value == Consts::KpRealUnset) return put('$');
    if (!std::isfinite(value)) {
        m_notFinite = true;
        return put('$');
    }
    char* to = room(KpStepText::kRealRoom);
    // Whole numbers are frequent and have a shorter way to their shortest text.
    if (const int whole = std::fabs(value) < 10000 ? static_cast<int>(value) : 0;
        whole == value && (whole != 0 || !std::signbit(value))) {
        char* end = std::to_chars(to, to + 16, whole).ptr;
        *end++ = '.';
        m_written += static_cast<std::size_t>(end - to);
        return;
    }
    m_written += static_cast<std::size_t>(KpStepText::writeReal(value, to) - to);
}

void KpSpfFilerBase::putText(std::string_view text) {
    char* const begin = room(text.size() + 2 + scan::kReach) + 1;
    char* const end = begin + text.size();
    begin[-1] = '\'';
    copyText(begin, text.data(), text.size());
    *end = '\'';
    if (scan::plainEnd(begin) == end) {
        m_written += text.size() + 2;
        return;
    }
    put('\'');
    if (!m_data.utf8 && KpStepText::isEncoded(text)) {
        put(text);
    } else {
        m_encoded.clear();
        KpStepText::encode(text, m_encoded);
        put(m_encoded);
    }
    put('\'');
}

void KpSpfFilerBase::wrChar(char c) {
    put(c);
}

void KpSpfFilerBase::wrKpAnsiString(const KpAnsiString& value, bool, bool separator) {
    separate(separator);
    wrPrimitive(value);
}

void KpSpfFilerBase::wrLimitedString(const char* text, int length, bool, bool separator) {
    separate(separator);
    const std::size_t used = strnlen(text, static_cast<std::size_t>(length));
    const std::string_view view(text, used);
    if (view == Consts::KpStringUnset) return put('$');
    putText(view);
}

void KpSpfFilerBase::wrDouble(const double& value, bool, bool separator) {
    separate(separator);
    putReal(value);
}

void KpSpfFilerBase::wrInt(const int& value, bool, bool separator) {
    separate(separator);
    wrPrimitive(value);
}

void KpSpfFilerBase::wrPrimitive(const KpIfcBoolean& value, bool, bool separator) {
    separate(separator);
    put(!value.isSet() ? "$" : value.isTrue() ? ".T." : ".F.");
}

void KpSpfFilerBase::wrPrimitive(const KpIfcLogical& value, bool, bool separator) {
    separate(separator);
    static constexpr std::string_view kLiterals[] = {".F.", ".T.", ".U."};
    put(value.code() < 3 ? kLiterals[value.code()] : "$");
}

void KpSpfFilerBase::wrReference(const KpDbObjectId& value, bool separator) {
    separate(separator);
    wrPrimitive(value);
}

void KpSpfFilerBase::wrSelect(const KpIfcSelect& value, bool, bool separator) {
    separate(separator);
    putSelect(value);
}

void KpSpfFilerBase::wrEnumerationStr(const KpAnsiString& literal, bool, bool separator) {
    wrEnumeration(literal.isEmpty() ? nullptr : literal.constStr(), separator);
}

void KpSpfFilerBase::wrEnumeration(const char* literal, bool separator) {
    separate(separator);
    if (!literal) return put('$');
    put('.');
    put(literal);
    put('.');
}

void KpSpfFilerBase::wrDerive(bool separator) {
    separate(separator);
    put('*');
}

void KpSpfFilerBase::wrPrimitive(const double& value) {
    putReal(value);
}

void KpSpfFilerBase::wrPrimitive(const int& value) {
    if (value == Consts::KpIntUnset) return put('$');
    putInt(value);
}

void KpSpfFilerBase::wrPrimitive(const KpAnsiString& value) {
    if (value.isUnset()) return put('$');
    putText(value.view());
}

void KpSpfFilerBase::wrBinary(const KpAnsiString& value) {
    if (value.isUnset()) return put('$');
    put('"');
    put(value.view());
    put('"');
}

void KpSpfFilerBase::wrPrimitive(const KpDbObjectId& value) {
    if (value.isNull()) return put('$');
    putName(value.instanceName());
}

void KpSpfFilerBase::wrPrimitive(const KpIfcSelect& value) {
    putSelect(value);
}

void KpSpfFilerBase::putSelect(const KpIfcSelect& value) {
    switch (value.valueKind()) {
    case kTypeNone: return put('$');
    case kTypeEntity: {
        KpDbObjectId handle;
        value.getHandle(handle);
        return wrPrimitive(handle);
    }
    default: break;
    }
    const std::size_t before = m_written;
    for (const char* name = value.underlyingTypeName(); *name; ++name) put(upperAscii(*name));
    put('(');
    const std::size_t start = m_written;
    switch (value.valueKind()) {
    case kTypeReal: {
        double number = 0;
        value.getDouble(number);
        putReal(number);
        break;
    }
    case kTypeInteger: {
        int number = 0;
        value.getInt(number);
        wrPrimitive(number);
        break;
    }
    case kTypeBoolean: {
        KpIfcBoolean code;
        value.getBoolean(code);
        wrPrimitive(code, false, false);
        break;
    }
    case kTypeLogical: {
        KpIfcLogical code;
        value.getLogical(code);
        wrPrimitive(code, false, false);
        break;
    }
    case kTypeString: wrPrimitive(*value.getString()); break;
    // Writing changes nothing; the operation is not const because reading shares its shape.
    default: const_cast<KpIfcSelect&>(value).writeTypedField(this); break;
    }
    if (m_written == start + 1 && m_buffer[start] == '$') { // an alternative without a value is no value
        m_written = before;
        return put('$');
    }
    put(')');
}
