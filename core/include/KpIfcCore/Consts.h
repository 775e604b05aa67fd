#pragma once

#include <KpIfcCore/KpAnsiString.h>
#include <KpIfcCore/KpDbObjectId.h>

#include <cstdint>

/// Values that mark an attribute as unset. Each compares with ==.
namespace Consts {

/// A finite number that no model means; a file that holds exactly it keeps its text all the same.
inline constexpr double KpRealUnset = -0x1.8b1cd0f1a2e37p+1021;
inline constexpr int KpIntUnset = 2147483647;
/// A text that no file holds, short enough for a GlobalId.
inline const char* const KpStringUnset = KP_SDAI::detail::g_unsetText.text;
inline constexpr std::uint64_t KpStringUnsetLength = sizeof(KP_SDAI::detail::g_unsetText.text) - 1;
inline constexpr KP_SDAI::KpDbObjectId KpHandleUnset{};

} // namespace Consts
