# What makes an installed tree a package: of CMake, and of Debian (cpack -G DEB).

include(CMakePackageConfigHelpers)
set(config "${CMAKE_INSTALL_LIBDIR}/cmake/KpIfc")
configure_package_config_file(
    cmake/KpIfcConfig.cmake.in "${PROJECT_BINARY_DIR}/cmake/KpIfcConfig.cmake" INSTALL_DESTINATION "${config}"
)
set(compatibility SameMajorVersion)
if(KpIfc_VERSION_MAJOR EQUAL 0)
    set(compatibility SameMinorVersion)
endif()
write_basic_package_version_file(
    "${PROJECT_BINARY_DIR}/cmake/KpIfcConfigVersion.cmake" COMPATIBILITY ${compatibility}
)
install(
    FILES "${PROJECT_BINARY_DIR}/cmake/KpIfcConfig.cmake" "${PROJECT_BINARY_DIR}/cmake/KpIfcConfigVersion.cmake"
    DESTINATION "${config}"
    COMPONENT Development
)
install(EXPORT KpIfcTargets NAMESPACE Kp:: DESTINATION "${config}" COMPONENT Development)
install(FILES README.md CHANGELOG.md DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT Runtime)
install(FILES docs/guide.md docs/command_line.md DESTINATION "${CMAKE_INSTALL_DOCDIR}/docs" COMPONENT Runtime)
install(
    DIRECTORY examples
    DESTINATION "${CMAKE_INSTALL_DOCDIR}"
    COMPONENT Development
    FILES_MATCHING PATTERN "*.cpp" PATTERN "*.h" PATTERN "*.ifc"
)

# Packages of the system: kpifc, to run programs, and kpifc-dev, to build them.
if(NOT PROJECT_IS_TOP_LEVEL)
    return()
endif()
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME kpifc)
set(CPACK_PACKAGE_VENDOR KpIfc)
set(CPACK_PACKAGE_CONTACT "KpIfc maintainers <maintainers@kpifc.example>" CACHE STRING "Who answers for the packages")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_PACKAGE_DIRECTORY "${PROJECT_BINARY_DIR}/packages")
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL Runtime Development)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME kpifc)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION
    "Reads, checks, edits and writes building models in STEP files of the schema IFC2X3: the program kpifc, the runtime
library and the schema module."
)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME kpifc-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "kpifc (= ${KpIfc_VERSION})")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION
    "For building programs: headers of the runtime library, a class for each entity of the schema IFC2X3, files for CMake and pkg-config, examples."
)
include(CPack)
