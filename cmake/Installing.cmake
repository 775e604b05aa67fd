# How libraries are versioned and installed. Everything installed finds the rest by relative paths, so that the tree can
# be moved. Components: Runtime (what programs need to run), Development (what is needed to build them).

include(GNUInstallDirs)
file(RELATIVE_PATH KP_BIN_TO_LIB "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBDIR}")
set(CMAKE_INSTALL_RPATH "$ORIGIN;$ORIGIN/${KP_BIN_TO_LIB}")

# kp_version_library(<target>)
#
# Gives a library the version of the project. Programs ask the loader for the part of it that stands for binary
# compatibility: 0.1 of 0.1.2, 1 of 1.2.3. The policy is that of CONTRIBUTING.md.
function(kp_version_library target)
    set(compatible ${KpIfc_VERSION_MAJOR})
    if(compatible EQUAL 0)
        set(compatible 0.${KpIfc_VERSION_MINOR})
    endif()
    set_target_properties(${target} PROPERTIES VERSION ${KpIfc_VERSION} SOVERSION ${compatible})
endfunction()

# kp_install_library(<target> AS <name> DESCRIPTION <text> INCLUDES <folder>/...)
#
# Installs a library, the headers below the folders, and what pkg-config needs to know. To CMake it is Kp::<name>.
function(kp_install_library target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "AS;DESCRIPTION" "INCLUDES")
    set_target_properties(${target} PROPERTIES EXPORT_NAME ${arg_AS})
    if(NOT KP_INSTALL)
        return()
    endif()
    install(
        TARGETS ${target}
        EXPORT KpIfcTargets
        RUNTIME COMPONENT Runtime
        LIBRARY COMPONENT Runtime NAMELINK_COMPONENT Development
        ARCHIVE COMPONENT Development
        INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}"
    )
    install(
        DIRECTORY ${arg_INCLUDES}
        DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}"
        COMPONENT Development
        FILES_MATCHING PATTERN "*.h"
    )

    set(pkgconfig "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig")
    file(RELATIVE_PATH includes "${pkgconfig}" "${CMAKE_INSTALL_FULL_INCLUDEDIR}")
    get_target_property(requires ${target} INTERFACE_LINK_LIBRARIES)
    list(FILTER requires INCLUDE REGEX "^Kp")
    configure_file("${PROJECT_SOURCE_DIR}/cmake/library.pc.in" "${PROJECT_BINARY_DIR}/pkgconfig/${target}.pc" @ONLY)
    install(
        FILES "${PROJECT_BINARY_DIR}/pkgconfig/${target}.pc"
        DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig"
        COMPONENT Development
    )
endfunction()
