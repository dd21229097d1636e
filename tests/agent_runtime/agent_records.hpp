// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <kinovane/agent_runtime.hpp>

#include "support/record_rows.hpp"

namespace kinovane::test {

/// The JSON keys of the status.
RecordRow statusRow();

/// The status that the full document of the row holds.
QuexRunAgentStatus fullStatus();

/// The records of the module.
std::vector<RecordRow> agentRecords();

} // namespace kinovane::test
