# kp_another_module(<SCHEMA> FILE <file>)
#
# Adds the library Kp<SCHEMA>, the module of another schema: what kpifcgen makes of FILE, whose 'schema' statement has
# the same name, and the hand-written half of IFC2X3 with that name in its stead, which is all that it knows of the
# schema. Left out is properties/SimpleProperty.cpp, the only source that knows entities: a module that is to export
# kpIfcBuildPropertyForSimple gets one of its own, by target_sources.
#
#   kp_another_module(IFC4 FILE ${PROJECT_SOURCE_DIR}/generator/schemas/ifc4.schema)
#
# The headers are included as <SCHEMA/Declaration.h>. The runtime finds the module by the name of the library, beside
# itself or in a folder of KPIFC_MODULE_PATH.
function(kp_another_module schema)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "FILE" "")
    set(half "${PROJECT_SOURCE_DIR}/ifc2x3")
    set(copy "${KP_GENERATED_DIR}/${schema}/by_hand")
    file(GLOB_RECURSE files RELATIVE "${half}" CONFIGURE_DEPENDS "${half}/*.h" "${half}/*.cpp")
    list(FILTER files EXCLUDE REGEX "/SimpleProperty\\.")
    set(sources "")
    foreach(file IN LISTS files)
        string(REPLACE IFC2X3 "${schema}" name "${file}")
        set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${half}/${file}")
        file(READ "${half}/${file}" text)
        string(REPLACE IFC2X3 "${schema}" text "${text}")
        file(CONFIGURE OUTPUT "${copy}/${name}" CONTENT "${text}" @ONLY)
        if(name MATCHES "\\.cpp$")
            list(APPEND sources "${name}")
        endif()
    endforeach()

    kp_generated_sources(
        ${schema}
        SCHEMA "${arg_FILE}"
        OUTPUT "${KP_GENERATED_DIR}/${schema}"
    )
    kp_schema_module(${schema} GENERATED ${schema} BY_HAND "${copy}" SOURCES ${sources})
endfunction()
