#include "Harness.h"
#include "Models.h"
#include "SmallModel.h"

#include <kpifc/Failure.h>
#include <kpifc/QueryEvaluation.h>
#include <kpifc/QueryParser.h>

#include <optional>
#include <string>

using namespace KP_SDAI;
using namespace kpifc;

namespace {

/// How many instances an expression finds; none where it is refused.
std::optional<std::size_t> found(const std::string& expression, const KpIfcModel& model) {
    std::size_t count = 0;
    try {
        const query::ParsedQuery parsed = query::parseQuery(expression, model.schema());
        query::Evaluation evaluation(model);
        std::uint64_t last = 0;
        evaluation.run(parsed.query, [&](const KpIfcEntityBase& instance) {
            require(instance.instanceName() > last, "each instance is found once, ascending");
            last = instance.instanceName();
            ++count;
        });
    } catch (const Failure& failure) {
        require(*failure.what() != '\0', "a refusal has a reason");
        return std::nullopt;
    }
    return count;
}

} // namespace

/// Lines as users give them to `kpifc query`, over a small model: each is refused, or finds something. As a condition a
/// line holds of an instance or its opposite does.
void fuzzTarget(std::string_view bytes) {
    keepModule();
    const KpIfcFile file = reopened(framed(kSmallModel));
    const KpIfcModel& model = *file.model();
    while (!bytes.empty()) {
        const std::string line(bytes.substr(0, bytes.find('\n')));
        bytes.remove_prefix(std::min(bytes.size(), line.size() + 1));
        found(line, model);
        const std::optional<std::size_t> with = found("*[" + line + "]", model);
        const std::optional<std::size_t> without = found("*[not (" + line + ")]", model);
        require(!with || !without || *with + *without == model.count(), "a condition holds or its opposite does");
    }
}
