# cmake -DBUILD=... -DSOURCE=... -DWORK=... -DVERSION=... -DCXX=... -DFLAGS=... -DLIBDIR=... -DBINDIR=... -P run.cmake
#
# Installs the build tree, moves what was installed, and builds and runs programs against it: by CMake, by pkg-config.

set(consumer "${CMAKE_CURRENT_LIST_DIR}")
set(house "${SOURCE}/examples/small_house.ifc")
set(tree "${WORK}/moved/kpifc")
set(plain_environment --unset=LD_LIBRARY_PATH --unset=KPIFC_MODULE_PATH --unset=DESTDIR)
file(REMOVE_RECURSE "${WORK}")

# run(<variable> COMMAND...): what a command prints; ends the test where it fails.
function(run variable)
    execute_process(
        COMMAND "${CMAKE_COMMAND}" -E env ${plain_environment} ${ARGN}
        OUTPUT_VARIABLE out
        ERROR_VARIABLE err
        RESULT_VARIABLE code
        OUTPUT_STRIP_TRAILING_WHITESPACE
    )
    if(NOT code EQUAL 0)
        list(JOIN ARGN " " command)
        message(FATAL_ERROR "${command}\nended with ${code}:\n${out}\n${err}")
    endif()
    set(${variable} "${out}" PARENT_SCOPE)
endfunction()

function(expect actual expected)
    if(NOT actual STREQUAL expected)
        message(SEND_ERROR "expected: ${expected}\nfound:    ${actual}")
    endif()
endfunction()

run(_ DESTDIR=${WORK}/stage "${CMAKE_COMMAND}" --install "${BUILD}" --prefix /opt/elsewhere)
file(MAKE_DIRECTORY "${WORK}/moved")
file(RENAME "${WORK}/stage/opt/elsewhere" "${tree}")
file(GLOB left "${WORK}/stage/*" "${WORK}/stage/opt/*")
expect("${left}" "${WORK}/stage/opt")

# Nothing in it knows where it was made.
file(GLOB_RECURSE files "${tree}/*")
foreach(file IN LISTS files)
    foreach(place "${BUILD}" "${SOURCE}" "${WORK}" /opt/elsewhere)
        string(REGEX REPLACE "([^A-Za-z0-9_/-])" "[\\1]" pattern "${place}")
        file(STRINGS "${file}" lines REGEX "${pattern}")
        if(lines)
            message(SEND_ERROR "${file} names ${place}: ${lines}")
        endif()
    endforeach()
endforeach()

run(out "${tree}/${BINDIR}/kpifc" --version)
expect("${out}" "kpifc ${VERSION}")
run(_ "${tree}/${BINDIR}/kpifc" check "${house}") # loads the module
foreach(file man/man1/kpifc.1 man/man1/kpifc-check.1 zsh/site-functions/_kpifc fish/vendor_completions.d/kpifc.fish)
    file(SIZE "${tree}/share/${file}" size)
    if(size LESS 100)
        message(SEND_ERROR "${file} has ${size} bytes")
    endif()
endforeach()
run(out bash -c "source \"$1\" && complete -p kpifc" bash "${tree}/share/bash-completion/completions/kpifc")

function(expect_programs folder libraries)
    run(out ${libraries} "${folder}/early" "${house}")
    expect("${out}" "early ${VERSION} of ${VERSION}: 4 walls")
    run(out ${libraries} "${folder}/late" "${house}")
    expect("${out}" "late ${tree}/${LIBDIR}/libKpIFC2X3.so: 4 walls")
endfunction()

# By CMake.
set(settings -G Ninja "-DCMAKE_CXX_COMPILER=${CXX}" "-DCMAKE_CXX_FLAGS=${FLAGS}" "-DCMAKE_PREFIX_PATH=${tree}")
run(_ "${CMAKE_COMMAND}" -S "${consumer}" -B "${WORK}/consumer" ${settings})
run(_ "${CMAKE_COMMAND}" --build "${WORK}/consumer")
expect_programs("${WORK}/consumer" "")

run(_ "${CMAKE_COMMAND}" -S "${consumer}/asks" -B "${WORK}/asks" ${settings} "-DVERSION=${VERSION}")

# By pkg-config and the compiler alone; the programs are told where the libraries are by who runs them.
find_program(pkg_config pkg-config REQUIRED)
file(MAKE_DIRECTORY "${WORK}/plain")
foreach(program early late)
    set(package KpIFC2X3)
    if(program STREQUAL late)
        set(package KpIfcCore)
    endif()
    run(words "PKG_CONFIG_PATH=${tree}/${LIBDIR}/pkgconfig" "${pkg_config}" --cflags --libs "${package} = ${VERSION}")
    separate_arguments(words UNIX_COMMAND "${words}")
    separate_arguments(flags UNIX_COMMAND "${FLAGS}")
    run(_ "${CXX}" -std=c++20 ${flags} "${consumer}/${program}.cpp" -o "${WORK}/plain/${program}" ${words})
endforeach()
expect_programs("${WORK}/plain" "LD_LIBRARY_PATH=${tree}/${LIBDIR}")

# As a part of another project: configured and planned, but not built, for that would build the module once more.
run(_ "${CMAKE_COMMAND}" -S "${consumer}" -B "${WORK}/embedded" ${settings} "-DKPIFC_SOURCE=${SOURCE}")
run(plan ninja -C "${WORK}/embedded" -n early late)
foreach(stranger kpifc_commands gtest)
    if(plan MATCHES "${stranger}")
        message(SEND_ERROR "a project that embeds this one builds ${stranger}")
    endif()
endforeach()
file(REMOVE_RECURSE "${WORK}")
