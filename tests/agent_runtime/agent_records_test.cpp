// SPDX-License-Identifier: Apache-2.0

#include "agent_runtime/agent_records.hpp"

#include <gtest/gtest.h>

#include "support/record_checks.hpp"

namespace kinovane::test {
namespace {

TEST(AgentRecords, ReadEveryKeyIntoItsMember) {
    for (const RecordRow& record : agentRecords())
        checkDecoding(record);
}

TEST(AgentRecords, RefuseMissingKeysAndWrongTypes) {
    for (const RecordRow& record : agentRecords())
        checkRefusals(record);
}

TEST(AgentRecords, DifferInEachMember) {
    for (const RecordRow& record : agentRecords())
        checkEquality(record);
}

TEST(AgentRecords, WriteTheirKeysInDeclaredOrder) {
    for (const RecordRow& record : agentRecords())
        checkEncoding(record);
}

} // namespace
} // namespace kinovane::test
