# KP_SANITIZE and KP_FUZZ, applied to everything that is compiled.

if(KP_FUZZ AND NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    message(FATAL_ERROR "The fuzzers need clang: cmake --preset fuzz")
endif()

if(KP_SANITIZE)
    add_compile_options(-fsanitize=${KP_SANITIZE} -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${KP_SANITIZE})
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        add_compile_options(-Wno-maybe-uninitialized) # false ones in <regex>, with the sanitizers only
    endif()
    if(KP_SANITIZE MATCHES "undefined")
        # A test fails where it would only have printed.
        add_compile_options(-fno-sanitize-recover=undefined)
    endif()
endif()

if(KP_FUZZ)
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()
