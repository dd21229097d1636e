#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <kinovane/json.hpp>

namespace kinovane::test {

/// What a key of a record takes.
enum class Holds { text, integer, flag, list, record };

/// One key of a record, in declared order, with a value that no other key has.
struct FieldRow {
    std::string_view key;
    std::string value; ///< As compact JSON.
    Holds holds = Holds::text;
    bool optional = false;
};

/// The compact JSON text of the fields; `replaced` gives other values, and an empty one leaves the key out.
inline std::string documentOf(const std::vector<FieldRow>& fields,
                              const std::map<std::string_view, std::string>& replaced = {}) {
    std::string document = "{";
    for (const FieldRow& field : fields) {
        const auto other = replaced.find(field.key);
        const std::string& value = other == replaced.end() ? field.value : other->second;
        if (value.empty())
            continue;
        document += (document.size() > 1 ? ",\"" : "\"") + std::string(field.key) + "\":" + value;
    }
    return document + "}";
}

/// The message with which a document is refused; empty when it is read.
template <class Record>
std::string refusalOf(const std::string& document) {
    try {
        decodeJSON<Record>(document);
    } catch (const JSONDecodingError& error) {
        return error.what();
    }
    return {};
}

struct WrongValue {
    std::string_view value;
    std::string_view complaint;
};

inline std::vector<WrongValue> wrongValues(Holds holds) {
    switch (holds) {
    case Holds::text:
        return {{"7", "expected a string, found a number"},
                {"true", "expected a string, found true"},
                {"[]", "expected a string, found a list"},
                {"{}", "expected a string, found an object"}};
    case Holds::integer:
        return {{"\"7\"", "expected an integer, found a string"},
                {"false", "expected an integer, found false"},
                {"1.5", "expected an integer, found 1.5"},
                {"9223372036854775808", "expected an integer that fits 64 bits, found 9223372036854775808"},
                {"[1]", "expected an integer, found a list"}};
    case Holds::flag:
        return {{"1", "expected true or false, found a number"},
                {"\"true\"", "expected true or false, found a string"}};
    case Holds::list:
        return {{"{}", "expected a list, found an object"}, {"\"a\"", "expected a list, found a string"}};
    case Holds::record:
        return {{"[]", "expected an object, found a list"}, {"0", "expected an object, found a number"}};
    }
    return {};
}

inline std::string nullComplaint(Holds holds) {
    switch (holds) {
    case Holds::text:
        return "expected a string, found null";
    case Holds::integer:
        return "expected an integer, found null";
    case Holds::flag:
        return "expected true or false, found null";
    case Holds::list:
        return "expected a list, found null";
    case Holds::record:
        break;
    }
    return "expected an object, found null";
}

/// Everything that is promised of one key: what happens when it is missing, null, or of a wrong type.
template <class Record>
void checkField(const std::vector<FieldRow>& fields, const FieldRow& field) {
    const std::string key(field.key);
    const std::string without = documentOf(fields, {{field.key, ""}});
    const std::string withNull = documentOf(fields, {{field.key, "null"}});
    if (field.optional) {
        EXPECT_EQ(encodeJSON(decodeJSON<Record>(without)), without);
        EXPECT_EQ(decodeJSON<Record>(withNull), decodeJSON<Record>(without));
    } else {
        EXPECT_EQ(refusalOf<Record>(without), key + " is missing");
        EXPECT_EQ(refusalOf<Record>(withNull), key + ": " + nullComplaint(field.holds));
    }
    for (const WrongValue& wrong : wrongValues(field.holds)) {
        SCOPED_TRACE(wrong.value);
        const std::string document = documentOf(fields, {{field.key, std::string(wrong.value)}});
        EXPECT_EQ(refusalOf<Record>(document), key + ": " + std::string(wrong.complaint));
    }
    EXPECT_NE(decodeJSON<Record>(documentOf(fields)), Record{}) << "every field counts for equality";
}

/// Everything that is promised of a record: `full` is what the fields' values make.
template <class Record>
void checkRecord(const std::vector<FieldRow>& fields, const Record& full) {
    const std::string document = documentOf(fields);
    EXPECT_EQ(encodeJSON(full), document);
    EXPECT_EQ(decodeJSON<Record>(document), full);
    for (const JSONFormat format : {JSONFormat::compact, JSONFormat::pretty})
        EXPECT_EQ(decodeJSON<Record>(encodeJSON(full, format)), full);

    std::string withMore = document;
    withMore.insert(1, R"("neverHeardOf":{"a":[1e400,null]},)");
    EXPECT_EQ(decodeJSON<Record>(withMore), full);

    for (const FieldRow& field : fields) {
        SCOPED_TRACE(field.key);
        checkField<Record>(fields, field);
    }
    EXPECT_EQ(refusalOf<Record>("{}"), std::string(fields.front().key) + " is missing");
    EXPECT_EQ(refusalOf<Record>("[]"), "expected an object, found a list");
    EXPECT_EQ(refusalOf<Record>("null"), "expected an object, found null");
}

} // namespace kinovane::test
