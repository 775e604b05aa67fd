# kp_schema_module(<SCHEMA> GENERATED <prefix> BY_HAND <folder> SOURCES <file>...)
#
# Adds the library Kp<SCHEMA>: the sources that kp_generated_sources(<prefix> ...) names, and those written by hand, with
# paths from <folder>. Shared rather than a CMake module, so that programs can link it for early-bound access; the
# runtime loads it by its name either way.
#
# Generated sources are tables and functions of one statement. What looks for redundancy between the parts of a function
# finds none in them and takes a fifth of their compilation, so it is left out; what walks the tables is written by hand
# or in the runtime, and optimised as all else is.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    set(KP_WITHOUT_REDUNDANCY_PASSES
        -fno-gcse
        -fno-thread-jumps
        -fno-tree-dominator-opts
        -fno-tree-pre
        -fno-tree-pta
        -fno-tree-vrp
    )
endif()

function(kp_schema_module schema)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "GENERATED;BY_HAND" "SOURCES")
    set(module Kp${schema})
    set(classes Kp${schema}Classes)

    add_library(${classes} OBJECT ${${arg_GENERATED}_SOURCES})
    set_target_properties(${classes} PROPERTIES UNITY_BUILD ${KP_UNITY} UNITY_BUILD_BATCH_SIZE 440)
    target_compile_options(${classes} PRIVATE ${KP_WITHOUT_REDUNDANCY_PASSES})
    if(KP_FUZZ)
        # Generated classes are data: fuzzers learn from what walks them, not from reaching the next class.
        target_compile_options(${classes} PRIVATE -fno-sanitize=fuzzer-no-link)
    endif()

    list(TRANSFORM arg_SOURCES PREPEND "${arg_BY_HAND}/")
    add_library(${module} SHARED ${arg_SOURCES} $<TARGET_OBJECTS:${classes}>)
    set_target_properties(${module} PROPERTIES UNITY_BUILD ${KP_UNITY} UNITY_BUILD_BATCH_SIZE 0)
    # On their own: what is walked for every instance and value is optimised the same whatever stands beside it.
    set_source_files_properties(
        "${arg_BY_HAND}/entities/Fields.cpp" "${arg_BY_HAND}/entities/LateBound.cpp"
        PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON
    )
    add_dependencies(${module} ${arg_GENERATED}_generate)

    foreach(target IN ITEMS ${classes} ${module})
        target_include_directories(
            ${target}
            PUBLIC
                "$<BUILD_INTERFACE:${arg_BY_HAND}/include>"
                "$<BUILD_INTERFACE:${${arg_GENERATED}_INCLUDE_DIR}>"
            PRIVATE "${arg_BY_HAND}"
        )
        target_compile_definitions(${target} PRIVATE KP${schema}_BUILDING)
        # Unique symbols would keep the library in memory after its last user has let go of it.
        target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-fno-gnu-unique>)
        target_link_libraries(${target} PUBLIC KpIfcCore PRIVATE kp_warnings)
    endforeach()
endfunction()
