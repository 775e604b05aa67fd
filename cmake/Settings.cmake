# Language, visibility and where things are put, for all targets.

if(PROJECT_IS_TOP_LEVEL AND NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    set(CMAKE_BUILD_TYPE Release CACHE STRING "Kind of build" FORCE)
endif()

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)

# What a library exports, its export macro says.
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

# The layout of an installed tree: programs find the libraries in ../lib, and the runtime finds schema modules beside
# itself. Relative, so that a build folder can be moved.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)

# All generated sources live below this folder, never in the source tree.
set(KP_GENERATED_DIR "${PROJECT_BINARY_DIR}/generated")

# A library that uses what it does not link fails when it is linked, not when it is loaded. Sanitizers leave their
# runtime undefined in shared libraries.
if(CMAKE_SYSTEM_NAME STREQUAL "Linux" AND NOT KP_SANITIZE)
    add_link_options("LINKER:-z,defs")
endif()
