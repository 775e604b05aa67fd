#pragma once

#include <cstdint>

namespace KP_SDAI {

/// EXPRESS BOOLEAN with a code for "no value".
class KpIfcBoolean {
public:
    enum Code : std::uint8_t { False = 0, True = 1, Unset = 2 };

    constexpr KpIfcBoolean() = default;
    constexpr KpIfcBoolean(Code code) : m_code(code) {}
    constexpr KpIfcBoolean(bool value) : m_code(value ? True : False) {}

    constexpr Code code() const { return m_code; }
    constexpr bool isSet() const { return m_code != Unset; }
    constexpr bool isTrue() const { return m_code == True; }
    friend constexpr bool operator==(KpIfcBoolean a, KpIfcBoolean b) { return a.m_code == b.m_code; }

private:
    Code m_code = Unset;
};

/// EXPRESS LOGICAL (false, true, unknown) with a code for "no value".
class KpIfcLogical {
public:
    enum Code : std::uint8_t { False = 0, True = 1, Unknown = 2, Unset = 3 };

    constexpr KpIfcLogical() = default;
    constexpr KpIfcLogical(Code code) : m_code(code) {}
    constexpr KpIfcLogical(bool value) : m_code(value ? True : False) {}

    constexpr Code code() const { return m_code; }
    constexpr bool isSet() const { return m_code != Unset; }
    constexpr bool isTrue() const { return m_code == True; }
    friend constexpr bool operator==(KpIfcLogical a, KpIfcLogical b) { return a.m_code == b.m_code; }

private:
    Code m_code = Unset;
};

} // namespace KP_SDAI
