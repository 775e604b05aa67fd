#pragma once

#include "facts/Linker.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

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
