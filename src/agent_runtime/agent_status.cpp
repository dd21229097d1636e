// SPDX-License-Identifier: Apache-2.0

#include <kinovane/agent_runtime.hpp>

#include "agent_runtime/agent_tables.hpp"
#include "common/json/instances.hpp"

namespace kinovane {

std::optional<QuexRunAgentModel> QuexRunAgentStatus::bestInstalledModel() const {
    const QuexRunAgentModel* best = nullptr;
    for (const QuexRunAgentModel& model : models) {
        const bool usable = model.installed && model.startableByQuexRun;
        if (usable &&
            (best == nullptr || model.recommendedUnifiedMemoryGB > best->recommendedUnifiedMemoryGB))
            best = &model;
    }
    if (best == nullptr)
        return std::nullopt;
    return *best;
}

KINOVANE_JSON_WRITABLE(QuexRunAgentModel)
KINOVANE_JSON_WRITABLE(QuexRunAgentPi)
KINOVANE_JSON_WRITABLE(QuexRunAgentStatus)

} // namespace kinovane
