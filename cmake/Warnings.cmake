# kp_warnings: link it privately (target_link_libraries(x PRIVATE kp_warnings)) to have our warnings in a target.

add_library(kp_warnings INTERFACE)
target_compile_options(
    kp_warnings
    INTERFACE
        -Wall
        -Wextra
        -Wpedantic
        -Wconversion
        -Wextra-semi
        -Wnon-virtual-dtor
        -Woverloaded-virtual
        -Wshadow
        -Wundef
        $<$<BOOL:${KP_WERROR}>:-Werror>
)
