# kp_generated_sources(<prefix> SCHEMA <file> OUTPUT <folder>)
#
# Adds the run of kpifcgen that writes the sources of one schema into OUTPUT, and says which files it will write. The
# declarations in the schema file are the list: none is kept by hand, and CMake runs again when the file changes.
#
#   SCHEMA  the .schema file
#   OUTPUT  where to write; must lie in the build tree, by custom below ${KP_GENERATED_DIR}
#
# With N the name of the schema and D that of a declaration, the files of OUTPUT are
#   entity, abstract entity   include/N/D.h   entities/D.cpp
#   select, enum              include/N/D.h   types/D.cpp
#   type                      none of its own
# and those that are about all declarations (fixed, below).
# Sets in the caller's scope, all as full paths:
#   <prefix>_ENTITY_SOURCES   entities/*.cpp
#   <prefix>_TYPE_SOURCES     types/*.cpp
#   <prefix>_HEADERS          include/N/*.h
#   <prefix>_FIXED_FILES      those about all declarations
#   <prefix>_SOURCES          all of the above, and the stamp file that every run touches
#   <prefix>_INCLUDE_DIR      OUTPUT/include
#
# kpifcgen leaves files alone whose text stays the same, and Ninja then does not compile what did not change: all files
# are by-products of the stamp. Give <prefix>_SOURCES, whole, to one target of the same folder: the stamp among them
# makes that target wait for kpifcgen, which by-products alone do not in a unity build. Any other target that includes
# the headers needs add_dependencies(<target> <prefix>_generate). The target "generated" is all such runs.
#
#   kp_generated_sources(ifc2x3 SCHEMA ${PROJECT_SOURCE_DIR}/generator/schemas/ifc2x3.schema
#                               OUTPUT ${KP_GENERATED_DIR}/ifc2x3)
#   add_library(classes OBJECT ${ifc2x3_SOURCES})
#   target_include_directories(classes PUBLIC ${ifc2x3_INCLUDE_DIR})

add_custom_target(generated)

function(kp_generated_sources prefix)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "SCHEMA;OUTPUT" "")
    if(NOT arg_SCHEMA OR NOT arg_OUTPUT OR arg_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "kp_generated_sources(<prefix> SCHEMA <file> OUTPUT <folder>)")
    endif()
    cmake_path(IS_PREFIX PROJECT_BINARY_DIR "${arg_OUTPUT}" NORMALIZE in_build_tree)
    if(NOT in_build_tree)
        message(FATAL_ERROR "Generated sources stay in the build tree, not in ${arg_OUTPUT}")
    endif()

    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${arg_SCHEMA}")
    set(blank "[ \t]+")
    file(STRINGS "${arg_SCHEMA}" declarations
         REGEX "^(schema|entity|abstract${blank}entity|select|enum)${blank}[A-Za-z0-9_]+")
    set(schema "")
    set(headers "")
    set(entities "")
    set(types "")
    foreach(line IN LISTS declarations)
        string(REGEX MATCH "^(abstract${blank})?([a-z]+)${blank}([A-Za-z0-9_]+)" _ "${line}")
        set(kind "${CMAKE_MATCH_2}")
        set(name "${CMAKE_MATCH_3}")
        if(kind STREQUAL "schema")
            set(schema "${name}")
            continue()
        elseif(kind STREQUAL "entity")
            list(APPEND entities "${arg_OUTPUT}/entities/${name}.cpp")
        else()
            list(APPEND types "${arg_OUTPUT}/types/${name}.cpp")
        endif()
        if(NOT schema)
            message(FATAL_ERROR "${arg_SCHEMA}: 'schema NAME' must stand before '${line}'")
        endif()
        list(APPEND headers "${arg_OUTPUT}/include/${schema}/${name}.h")
    endforeach()
    if(NOT headers)
        message(FATAL_ERROR "${arg_SCHEMA}: no declarations")
    endif()
    set(fixed
        include/${schema}/Entities.h
        include/${schema}/Properties.h
        module/Descriptors.cpp
        properties/Properties.cpp
        schema/AggregationTypes.cpp
        schema/EntityTypes.cpp
        schema/EnumerationTypes.cpp
        schema/SelectTypes.cpp
        schema/SimpleDefinedTypes.cpp
    )
    list(TRANSFORM fixed PREPEND "${arg_OUTPUT}/")
    set(all ${entities} ${types} ${headers} ${fixed})

    set(stamp "${arg_OUTPUT}/generated.stamp")
    cmake_path(GET arg_SCHEMA FILENAME schema_name)
    add_custom_command(
        OUTPUT "${stamp}"
        BYPRODUCTS ${all}
        COMMAND kpifcgen "${arg_SCHEMA}" -o "${arg_OUTPUT}"
        COMMAND "${CMAKE_COMMAND}" -E touch "${stamp}"
        DEPENDS kpifcgen "${arg_SCHEMA}"
        COMMENT "Generating the sources of ${schema_name}"
        VERBATIM
    )
    add_custom_target(${prefix}_generate DEPENDS "${stamp}")
    add_dependencies(generated ${prefix}_generate)

    set(${prefix}_ENTITY_SOURCES "${entities}" PARENT_SCOPE)
    set(${prefix}_TYPE_SOURCES "${types}" PARENT_SCOPE)
    set(${prefix}_HEADERS "${headers}" PARENT_SCOPE)
    set(${prefix}_FIXED_FILES "${fixed}" PARENT_SCOPE)
    set(${prefix}_SOURCES "${all};${stamp}" PARENT_SCOPE)
    set(${prefix}_INCLUDE_DIR "${arg_OUTPUT}/include" PARENT_SCOPE)
endfunction()
