// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <string>

#include <gtest/gtest.h>

#include "support/record_rows.hpp"

namespace kinovane::test {
namespace {

struct Sample {
    std::string value;
    std::string found;
};

/// A value of every type, and how a message names it.
const std::vector<Sample> samples{
    {R"("5")", "a string"}, {"5", "a number"}, {"5.5", "a number"}, {"true", "true"},
    {"false", "false"},     {"[]", "a list"},  {"{}", "an object"}, {"9223372036854775808", "a number"},
};

/// What a message says of the sample in this place; nothing when the place takes it, or when what is inside
/// decides.
std::optional<std::string> complaint(const KeyRow& key, const Sample& sample) {
    const bool number = sample.found == "a number";
    if (sample.found == key.expected ||
        (key.expected == "true or false" && sample.value.find_first_of("tf") == 0))
        return std::nullopt;
    if (key.expected == "a number" && number)
        return std::nullopt;
    if (key.expected == "an integer" && number) {
        if (sample.value == "5")
            return std::nullopt;
        const std::string what = sample.value == "5.5" ? "an integer" : "an integer that fits 64 bits";
        return key.key + " | " + key.key + ": expected " + what + ", found " + sample.value;
    }
    return key.key + " | " + key.key + ": expected " + std::string(key.expected) + ", found " + sample.found;
}

class Records : public testing::TestWithParam<RecordRow> {};

TEST_P(Records, EveryKeyIsReadIntoItsMember) {
    EXPECT_TRUE(GetParam().isFull(GetParam().fullDocument()));
    std::vector<KeyRow> backwards(GetParam().keys.rbegin(), GetParam().keys.rend());
    EXPECT_TRUE(GetParam().isFull(GetParam().documentOf(backwards)));
}

TEST_P(Records, ARequiredKeyMustBeThere) {
    for (const KeyRow& key : GetParam().keys) {
        if (key.optional)
            continue;
        SCOPED_TRACE(key.key);
        EXPECT_EQ(GetParam().refusal(GetParam().documentWithout(key.key)),
                  key.key + " | " + key.key + " is missing");
        EXPECT_EQ(GetParam().refusal(GetParam().documentWith(key.key, "null")),
                  key.key + " | " + key.key + ": expected " + std::string(key.expected) + ", found null");
    }
}

TEST_P(Records, AnOptionalKeyMayBeMissingOrNull) {
    for (const KeyRow& key : GetParam().keys) {
        if (!key.optional)
            continue;
        SCOPED_TRACE(key.key);
        const std::string missing = GetParam().documentWithout(key.key);
        const std::string null = GetParam().documentWith(key.key, "null");
        EXPECT_EQ(GetParam().refusal(missing), std::nullopt);
        EXPECT_EQ(GetParam().refusal(null), std::nullopt);
        EXPECT_TRUE(GetParam().equal(missing, null));
        EXPECT_FALSE(GetParam().isFull(missing));
    }
}

TEST_P(Records, AValueOfAnotherTypeIsRefused) {
    for (const KeyRow& key : GetParam().keys)
        for (const Sample& sample : samples) {
            const std::optional<std::string> expected = complaint(key, sample);
            if (!expected)
                continue;
            SCOPED_TRACE(key.key + " is " + sample.value);
            EXPECT_EQ(GetParam().refusal(GetParam().documentWith(key.key, sample.value)), expected);
        }
}

TEST_P(Records, OfSeveralWrongKeysTheFirstDeclaredIsReported) {
    std::vector<KeyRow> wrong = GetParam().keys;
    for (KeyRow& key : wrong)
        key.value = key.expected == "a list" ? "{}" : "[]";
    std::reverse(wrong.begin(), wrong.end());
    const KeyRow& first = GetParam().keys.front();
    EXPECT_EQ(GetParam().refusal(GetParam().documentOf(wrong)),
              first.key + " | " + first.key + ": expected " + std::string(first.expected) + ", found " +
                  (first.expected == "a list" ? "an object" : "a list"));
}

TEST_P(Records, AnotherDocumentThanAnObjectIsRefused) {
    EXPECT_EQ(GetParam().refusal("[]"), " | expected an object, found a list");
    EXPECT_EQ(GetParam().refusal("null"), " | expected an object, found null");
    EXPECT_EQ(GetParam().refusal(""), " | line 1, column 1: the document ends too early");
}

TEST_P(Records, UnknownKeysAreIgnored) {
    std::vector<KeyRow> more = GetParam().keys;
    more.insert(more.begin(), KeyRow{"unknown", "", R"([{"id":null},1e400])"});
    more.push_back(KeyRow{"ID", "", "12345678901234567890123"});
    const std::string document = GetParam().documentOf(more);
    EXPECT_TRUE(GetParam().isFull(document));
    if (GetParam().rewritten != nullptr)
        EXPECT_EQ(GetParam().rewritten(document, JSONFormat::compact), GetParam().fullDocument());
}

TEST_P(Records, RecordsThatDifferInOneMemberAreUnequal) {
    const std::string full = GetParam().fullDocument();
    EXPECT_TRUE(GetParam().equal(full, full));
    for (const KeyRow& key : GetParam().keys) {
        SCOPED_TRACE(key.key);
        if (key.expected == "an object" && !key.mayBeEmpty)
            continue; // Its own record is compared in its own turn, and the whole by what it holds.
        std::string other = key.expected == "an object" ? "{}" : "[]";
        if (key.expected == "a string")
            other = R"("another")";
        else if (key.expected == "true or false")
            other = key.value == "true" ? "false" : "true";
        else if (!key.mayBeEmpty)
            other = "99";
        EXPECT_FALSE(GetParam().equal(full, GetParam().documentWith(key.key, other)));
    }
}

TEST_P(Records, WritingGivesTheDeclaredOrderWithoutWhatIsAbsent) {
    const RecordRow& record = GetParam();
    if (record.rewritten == nullptr)
        return;
    std::vector<KeyRow> backwards(record.keys.rbegin(), record.keys.rend());
    EXPECT_EQ(record.rewritten(record.documentOf(backwards), JSONFormat::compact), record.fullDocument());
    EXPECT_TRUE(record.isFull(record.rewritten(record.fullDocument(), JSONFormat::pretty)));

    std::vector<KeyRow> required = record.keys;
    std::erase_if(required, [](const KeyRow& key) { return key.optional; });
    const std::string smallest = record.documentOf(required);
    EXPECT_EQ(record.rewritten(smallest, JSONFormat::compact), smallest);
    for (const KeyRow& key : record.keys) {
        if (!key.optional)
            continue;
        EXPECT_EQ(record.rewritten(record.documentWith(key.key, "null"), JSONFormat::compact),
                  record.documentWithout(key.key));
    }
}

TEST_P(Records, EmptyListsAndMapsAreReadAndWritten) {
    for (const KeyRow& key : GetParam().keys) {
        if (!key.mayBeEmpty)
            continue;
        SCOPED_TRACE(key.key);
        const std::string document = GetParam().documentWith(key.key, key.expected == "a list" ? "[]" : "{}");
        EXPECT_EQ(GetParam().refusal(document), std::nullopt);
        if (GetParam().rewritten != nullptr)
            EXPECT_EQ(GetParam().rewritten(document, JSONFormat::compact), document);
    }
}

const auto nameOf = [](const auto& info) { return info.param.name; };
INSTANTIATE_TEST_SUITE_P(Room, Records, testing::ValuesIn(recordsOfTheRoom()), nameOf);

} // namespace

} // namespace kinovane::test
