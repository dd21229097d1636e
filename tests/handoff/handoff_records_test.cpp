// SPDX-License-Identifier: Apache-2.0

#include "handoff/handoff_records.hpp"

#include <gtest/gtest.h>

#include "support/record_checks.hpp"

namespace kinovane::test {
namespace {

TEST(HandoffRecords, ReadEveryKeyIntoItsMember) {
    for (const RecordRow& record : handoffRecords())
        checkDecoding(record);
}

TEST(HandoffRecords, RefuseMissingKeysAndWrongTypes) {
    for (const RecordRow& record : handoffRecords())
        checkRefusals(record);
}

TEST(HandoffRecords, DifferInEachMember) {
    for (const RecordRow& record : handoffRecords())
        checkEquality(record);
}

TEST(HandoffRecords, WriteTheirKeysInDeclaredOrder) {
    for (const RecordRow& record : handoffRecords())
        checkEncoding(record);
}

TEST(HandoffRecords, WriteTheEmptyListsOfAShot) {
    VistrelHandoffShot shot;
    shot.id = "s1";
    EXPECT_EQ(
        encodeJSON(shot),
        R"({"id":"s1","order":0,"purpose":"","prompt":"","framePrompt":"","timelineStartMilliseconds":0,)"
        R"("durationMilliseconds":0,"characterIds":[],"locationId":"","transition":"","take":0,"seed":0,)"
        R"("dialogue":[],"soundEffects":[]})");
}

TEST(HandoffRecords, NameThePositionOfAnErrorInAList) {
    struct Row {
        std::string_view sentence;
        std::string key;
        std::string value;
        std::string expected;
    };
    const std::vector<Row> rows{
        {"a character that is a number", "characterIds", R"(["a",1])",
         "characterIds[1]: expected a string, found a number"},
        {"a line without its text", "dialogue",
         R"([{"speaker":"a","text":"b","startSeconds":0,"delivery":"c"},{"speaker":"a"}])",
         "dialogue[1].text is missing"},
        {"a line whose start is a string", "dialogue",
         R"([{"speaker":"a","text":"b","startSeconds":"0","delivery":"c"}])",
         "dialogue[0].startSeconds: expected a number, found a string"},
        {"an effect whose seed has a fraction", "soundEffects",
         R"([{"prompt":"a","startSeconds":0,"durationSeconds":1,"levelDb":0,"seed":0.5}])",
         "soundEffects[0].seed: expected an integer, found 0.5"},
        {"an effect whose duration does not fit a double", "soundEffects",
         R"([{"prompt":"a","startSeconds":0,"durationSeconds":1e999,"levelDb":0,"seed":1}])",
         "soundEffects[0].durationSeconds: expected a number that fits a double, found 1e999"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        EXPECT_EQ(refusalOf<VistrelHandoffShot>(shotRow().documentWith(row.key, row.value)), row.expected);
    }
}

TEST(HandoffRecords, IgnoreCamelCaseKeysOfAReceipt) {
    EXPECT_EQ(refusalOf<VistrelImportReceipt>(R"({"ok":true,"projectId":"p"})"), "project_id is missing");
    const auto receipt = decodeJSON<VistrelImportReceipt>(
        R"({"ok":true,"project_id":"p","episodeId":"e","importedShots":4,"projectURL":"u","project_URL":"u"})");
    EXPECT_EQ(receipt, (VistrelImportReceipt{true, "p", {}, {}, {}, {}, {}}));
    EXPECT_EQ(encodeJSON(receipt), R"({"ok":true,"project_id":"p"})");
}

} // namespace
} // namespace kinovane::test
