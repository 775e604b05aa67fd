#include "Harness.h"
#include "Models.h"

/// A whole file.
void fuzzTarget(std::string_view bytes) {
    requireRoundTrip(bytes);
}
