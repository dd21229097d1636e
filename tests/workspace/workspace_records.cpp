// SPDX-License-Identifier: Apache-2.0

#include "workspace/workspace_records.hpp"

namespace kinovane::test {

std::vector<RecordRow> workspaceRecords() {
    std::vector<RecordRow> records = projectRecords();
    const std::vector<RecordRow> more = planRecords();
    records.insert(records.end(), more.begin(), more.end());
    return records;
}

} // namespace kinovane::test
