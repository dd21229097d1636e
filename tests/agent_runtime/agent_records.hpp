// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <kinovane/agent_runtime.hpp>

#include "support/record_rows.hpp"

namespace kinovane::test {

RecordRow statusRow();

/// The status in which every key of the row has its value.
QuexRunAgentStatus fullStatus();

/// The records of the module.
std::vector<RecordRow> agentRecords();

} // namespace kinovane::test
