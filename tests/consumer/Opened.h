#pragma once

#include <KpIfcCore/KpIfcFile.h>

#include <cstdlib>
#include <iostream>

/// A file; ends the program where it cannot be read.
inline KP_SDAI::KpIfcFile opened(const char* path) {
    KP_SDAI::KpIfcFile file;
    if (file.open(path) != KP::eOk) {
        std::cerr << file.error() << '\n';
        std::exit(2);
    }
    return file;
}
