// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <kinovane/agent_runtime.hpp>

#include "common/json/table.hpp"

/// The JSON keys of the agent runtime's status.
namespace kinovane::json {

template <>
struct Table<QuexRunAgentModel> {
    static constexpr std::tuple fields{
        field("id", &QuexRunAgentModel::id),
        field("displayName", &QuexRunAgentModel::displayName),
        field("installed", &QuexRunAgentModel::installed),
        field("recommendedUnifiedMemoryGB", &QuexRunAgentModel::recommendedUnifiedMemoryGB),
        field("servingEngine", &QuexRunAgentModel::servingEngine),
        field("startableByQuexRun", &QuexRunAgentModel::startableByQuexRun),
    };
};

template <>
struct Table<QuexRunAgentPi> {
    static constexpr std::tuple fields{
        field("installed", &QuexRunAgentPi::installed),
        field("path", &QuexRunAgentPi::path),
        field("version", &QuexRunAgentPi::version),
    };
};

template <>
struct Table<QuexRunAgentStatus> {
    static constexpr std::tuple fields{
        field("models", &QuexRunAgentStatus::models),
        field("pi", &QuexRunAgentStatus::pi),
    };
};

} // namespace kinovane::json
