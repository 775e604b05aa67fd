#pragma once

#include <cstdlib>
#include <iostream>

/// Ends a fuzzer, which then keeps its input, where something that always holds does not.
inline void require(bool holds, const char* what) {
    if (!holds) {
        std::cerr << "not so: " << what << '\n';
        std::abort();
    }
}
