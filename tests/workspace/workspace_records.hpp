// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <vector>

#include "support/record_rows.hpp"

namespace kinovane::test {

std::vector<RecordRow> projectRecords();
std::vector<RecordRow> planRecords();

/// The records of the module.
std::vector<RecordRow> workspaceRecords();

} // namespace kinovane::test
