#include "Harness.h"
#include "Models.h"

/// A data section.
void fuzzTarget(std::string_view bytes) {
    requireRoundTrip(framed(bytes));
}
