#include "EditSteps.h"
#include "Harness.h"
#include "Models.h"
#include "SmallModel.h"

/// Bytes as a sequence of edits by name, in and out of change groups: whatever they are, the model says true things
/// about itself, what is saved reads back as what it was, and what is rolled back leaves no trace.
void fuzzTarget(std::string_view bytes) {
    keepModule();
    EditSteps steps(reopened(framed(kSmallModel)), bytes);
    for (int i = 0; i < 64 && !steps.isDone(); ++i) {
        steps.next();
    }
    steps.finish();
}
