// SPDX-License-Identifier: Apache-2.0

#include "support/record_checks.hpp"

#include <algorithm>

#include <gtest/gtest.h>

namespace kinovane::test {

namespace {

/// A value that a key of some type refuses, and the message that follows the key's name.
struct WrongValue {
    std::string value;
    std::string message;
};

const std::vector<WrongValue> wrongTexts{
    {"null", "expected a string, found null"},
    {"5", "expected a string, found a number"},
    {"5.5", "expected a string, found a number"},
    {"9223372036854775808", "expected a string, found a number"},
    {"true", "expected a string, found true"},
    {"false", "expected a string, found false"},
    {"{}", "expected a string, found an object"},
    {"[]", "expected a string, found a list"},
};
const std::vector<WrongValue> wrongIntegers{
    {"null", "expected an integer, found null"},
    {R"("5")", "expected an integer, found a string"},
    {"5.5", "expected an integer, found 5.5"},
    {"9223372036854775808", "expected an integer that fits 64 bits, found 9223372036854775808"},
    {"true", "expected an integer, found true"},
    {"false", "expected an integer, found false"},
    {"{}", "expected an integer, found an object"},
    {"[]", "expected an integer, found a list"},
};
const std::vector<WrongValue> wrongReals{
    {"null", "expected a number, found null"},    {R"("5")", "expected a number, found a string"},
    {"true", "expected a number, found true"},    {"false", "expected a number, found false"},
    {"{}", "expected a number, found an object"}, {"[]", "expected a number, found a list"},
};
const std::vector<WrongValue> wrongBooleans{
    {"null", "expected true or false, found null"},
    {R"("5")", "expected true or false, found a string"},
    {"5", "expected true or false, found a number"},
    {"5.5", "expected true or false, found a number"},
    {"9223372036854775808", "expected true or false, found a number"},
    {"{}", "expected true or false, found an object"},
    {"[]", "expected true or false, found a list"},
};
const std::vector<WrongValue> wrongLists{
    {"null", "expected a list, found null"},
    {R"("5")", "expected a list, found a string"},
    {"5", "expected a list, found a number"},
    {"5.5", "expected a list, found a number"},
    {"9223372036854775808", "expected a list, found a number"},
    {"true", "expected a list, found true"},
    {"false", "expected a list, found false"},
    {"{}", "expected a list, found an object"},
};
const std::vector<WrongValue> wrongObjects{
    {"null", "expected an object, found null"},
    {R"("5")", "expected an object, found a string"},
    {"5", "expected an object, found a number"},
    {"5.5", "expected an object, found a number"},
    {"9223372036854775808", "expected an object, found a number"},
    {"true", "expected an object, found true"},
    {"false", "expected an object, found false"},
    {"[]", "expected an object, found a list"},
};

/// An optional key accepts null.
const std::vector<WrongValue>& wrongValues(KeyType type) {
    switch (type) {
    case KeyType::text:
        return wrongTexts;
    case KeyType::integer:
        return wrongIntegers;
    case KeyType::real:
        return wrongReals;
    case KeyType::boolean:
        return wrongBooleans;
    case KeyType::list:
        return wrongLists;
    case KeyType::object:
    case KeyType::map:
        break;
    }
    return wrongObjects;
}

/// A valid value that the full record does not have; empty for an object, whose members are compared by the
/// row of its own record.
std::string otherValue(const KeyRow& key) {
    switch (key.type) {
    case KeyType::text:
        return R"("another")";
    case KeyType::integer:
    case KeyType::real:
        return "99";
    case KeyType::boolean:
        return key.value == "true" ? "false" : "true";
    case KeyType::list:
        return "[]";
    case KeyType::map:
        return "{}";
    case KeyType::object:
        break;
    }
    return "";
}

std::string reversedDocument(const RecordRow& record) {
    return record.documentOf({record.keys.rbegin(), record.keys.rend()});
}

/// The full record with two unknown keys, one of them a known key in other letters.
std::string documentWithUnknownKeys(const RecordRow& record) {
    std::vector<KeyRow> keys = record.keys;
    keys.insert(keys.begin(), list("unknown", R"([{"id":null},1e400])"));
    keys.push_back(integer("ID", "12345678901234567890123"));
    return record.documentOf(keys);
}

void checkOptionalKey(const RecordRow& record, const KeyRow& key) {
    const std::string missing = record.documentWithout(key.key);
    const std::string null = record.documentWith(key.key, "null");
    EXPECT_EQ(record.decodingError(missing), std::nullopt);
    EXPECT_EQ(record.decodingError(null), std::nullopt);
    EXPECT_TRUE(record.areEqual(missing, null));
    EXPECT_FALSE(record.isFullRecord(missing));
    if (record.reencoded != nullptr)
        EXPECT_EQ(record.reencoded(null, JSONFormat::compact), missing);
}

void checkEmptyValue(const RecordRow& record, const KeyRow& key) {
    const std::string document = record.documentWith(key.key, key.type == KeyType::list ? "[]" : "{}");
    EXPECT_EQ(record.decodingError(document), std::nullopt);
    if (record.reencoded != nullptr)
        EXPECT_EQ(record.reencoded(document, JSONFormat::compact), document);
}

/// Of several wrong keys the one declared first is reported, wherever it stands in the document.
void checkFirstOfWrongKeys(const RecordRow& record) {
    std::vector<KeyRow> wrong = record.keys;
    for (KeyRow& key : wrong)
        key.value = wrongValues(key.type).back().value;
    std::reverse(wrong.begin(), wrong.end());
    const KeyRow& first = record.keys.front();
    EXPECT_EQ(record.decodingError(record.documentOf(wrong)),
              first.key + " | " + first.key + ": " + wrongValues(first.type).back().message);
}

} // namespace

void checkDecoding(const RecordRow& record) {
    SCOPED_TRACE(record.name);
    EXPECT_TRUE(record.isFullRecord(record.fullDocument()));
    EXPECT_TRUE(record.isFullRecord(reversedDocument(record)));
    EXPECT_TRUE(record.isFullRecord(documentWithUnknownKeys(record)));
    for (const KeyRow& key : record.keys) {
        SCOPED_TRACE(key.key);
        if (key.optional)
            checkOptionalKey(record, key);
        if (key.type == KeyType::list || key.type == KeyType::map)
            checkEmptyValue(record, key);
    }
}

void checkRefusals(const RecordRow& record) {
    SCOPED_TRACE(record.name);
    EXPECT_EQ(record.decodingError("[]"), " | expected an object, found a list");
    EXPECT_EQ(record.decodingError("null"), " | expected an object, found null");
    EXPECT_EQ(record.decodingError(""), " | line 1, column 1: the document ends too early");
    checkFirstOfWrongKeys(record);
    for (const KeyRow& key : record.keys) {
        SCOPED_TRACE(key.key);
        if (!key.optional)
            EXPECT_EQ(record.decodingError(record.documentWithout(key.key)),
                      key.key + " | " + key.key + " is missing");
        for (const auto& [value, message] : wrongValues(key.type)) {
            if (key.optional && value == "null")
                continue;
            EXPECT_EQ(record.decodingError(record.documentWith(key.key, value)),
                      key.key + " | " + key.key + ": " + message);
        }
    }
}

void checkEquality(const RecordRow& record) {
    SCOPED_TRACE(record.name);
    const std::string full = record.fullDocument();
    EXPECT_TRUE(record.areEqual(full, full));
    for (const KeyRow& key : record.keys) {
        SCOPED_TRACE(key.key);
        const std::string other = otherValue(key);
        if (!other.empty())
            EXPECT_FALSE(record.areEqual(full, record.documentWith(key.key, other)));
    }
}

void checkEncoding(const RecordRow& record) {
    if (record.reencoded == nullptr)
        return;
    SCOPED_TRACE(record.name);
    const std::string full = record.fullDocument();
    EXPECT_EQ(record.reencoded(reversedDocument(record), JSONFormat::compact), full);
    EXPECT_EQ(record.reencoded(documentWithUnknownKeys(record), JSONFormat::compact), full);
    EXPECT_TRUE(record.isFullRecord(record.reencoded(full, JSONFormat::pretty)));

    std::vector<KeyRow> required = record.keys;
    std::erase_if(required, [](const KeyRow& key) { return key.optional; });
    const std::string smallest = record.documentOf(required);
    EXPECT_EQ(record.reencoded(smallest, JSONFormat::compact), smallest);
}

} // namespace kinovane::test
