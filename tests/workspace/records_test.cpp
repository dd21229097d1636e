// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>

#include <kinovane/workspace.hpp>

#include "workspace/record_rows.hpp"

namespace kinovane::test {

std::vector<RecordRow> recordsOfTheRoom() {
    std::vector<RecordRow> records = projectRecords();
    const std::vector<RecordRow> more = planRecords();
    records.insert(records.end(), more.begin(), more.end());
    return records;
}

namespace {

TEST(WorkspaceRecords, OnlyTheProjectAndItsBriefAreNeverWritten) {
    for (const RecordRow& record : recordsOfTheRoom()) {
        const bool onlyRead = record.name == "FilmProject" || record.name == "FilmBrief";
        EXPECT_EQ(record.rewritten == nullptr, onlyRead) << record.name;
    }
}

} // namespace

} // namespace kinovane::test
