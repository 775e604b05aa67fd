#pragma once

/// KPIFCCORE_EXPORT marks what the shared library KpIfcCore offers to programs and schema modules; all else is hidden.
#if defined(_WIN32)
#if defined(KPIFCCORE_BUILDING)
#define KPIFCCORE_EXPORT __declspec(dllexport)
#else
#define KPIFCCORE_EXPORT __declspec(dllimport)
#endif
#else
#define KPIFCCORE_EXPORT __attribute__((visibility("default")))
#endif
