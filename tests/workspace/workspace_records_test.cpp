// SPDX-License-Identifier: Apache-2.0

#include "workspace/workspace_records.hpp"

#include <gtest/gtest.h>

#include "support/record_checks.hpp"

namespace kinovane::test {
namespace {

TEST(WorkspaceRecords, ReadEveryKeyIntoItsMember) {
    for (const RecordRow& record : workspaceRecords())
        checkDecoding(record);
}

TEST(WorkspaceRecords, RefuseMissingKeysAndWrongTypes) {
    for (const RecordRow& record : workspaceRecords())
        checkRefusals(record);
}

TEST(WorkspaceRecords, DifferInEachMember) {
    for (const RecordRow& record : workspaceRecords())
        checkEquality(record);
}

TEST(WorkspaceRecords, WriteTheirKeysInDeclaredOrder) {
    for (const RecordRow& record : workspaceRecords())
        checkEncoding(record);
}

TEST(WorkspaceRecords, AreWrittenExceptTheProjectAndItsBrief) {
    for (const RecordRow& record : workspaceRecords()) {
        const bool onlyRead = record.name == "FilmProject" || record.name == "FilmBrief";
        EXPECT_EQ(record.reencoded == nullptr, onlyRead) << record.name;
    }
}

} // namespace
} // namespace kinovane::test
