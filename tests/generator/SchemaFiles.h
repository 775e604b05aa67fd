#pragma once

#include "facts/Linker.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <ostream>
#include <stdexcept>
#include <string>

/// A schema that is not sound.
struct ErrorCase {
    const char* name;
    const char* text;
    const char* errors; ///< as printed for a file called "f"
};
inline void PrintTo(const ErrorCase& one, std::ostream* stream) {
    *stream << one.name;
}
inline std::string caseName(const testing::TestParamInfo<ErrorCase>& info) {
    return info.param.name;
}

/// Text of a file of the source tree.
inline std::string readSource(const std::string& path) {
    std::ifstream stream(std::string(KP_SOURCE_DIR) + "/" + path, std::ios::binary);
    if (!stream) {
        throw std::runtime_error("cannot read " + path);
    }
    return {std::istreambuf_iterator(stream), {}};
}

/// A schema that must be sound.
inline kpifcgen::facts::Schema loadSound(const std::string& text) {
    kpifcgen::facts::Diagnostics diagnostics;
    auto schema = kpifcgen::facts::load(text, diagnostics);
    if (!schema) {
        throw std::runtime_error(kpifcgen::facts::format("schema", diagnostics));
    }
    return std::move(*schema);
}
