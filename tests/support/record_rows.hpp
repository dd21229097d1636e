// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <functional>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <kinovane/json.hpp>

namespace kinovane::test {

/// A JSON key of a record, with a value that no other key of the record has.
struct KeyRow {
    std::string key;
    std::string_view expected; ///< What a message says that it should have been.
    std::string value;         ///< As compact JSON.
    bool optional = false;
    bool mayBeEmpty = false; ///< A list or a map.
};

/// A text key; its value is the key's own name.
KeyRow text(std::string key);
KeyRow integer(std::string key, std::string value);
KeyRow real(std::string key, std::string value);
KeyRow boolean(std::string key, std::string value);
KeyRow list(std::string key, std::string value);
KeyRow object(std::string key, std::string value);
KeyRow map(std::string key, std::string value);
KeyRow optional(KeyRow row);

/// A record, with a value for every key, and how it is read and written.
struct RecordRow {
    std::string name;
    std::vector<KeyRow> keys; ///< In declared order.
    /// What a failed reading says, as "path | message"; nothing when it succeeds.
    std::optional<std::string> (*refusal)(std::string_view document);
    /// Whether the document holds the record in which every key has its value.
    std::function<bool(std::string_view document)> isFull;
    bool (*equal)(std::string_view one, std::string_view other);
    /// Reads and writes again; null for a record that is only read.
    std::string (*rewritten)(std::string_view document, JSONFormat format);

    /// The record as compact JSON with these of its keys.
    std::string documentOf(const std::vector<KeyRow>& some) const;
    std::string fullDocument() const { return documentOf(keys); }
    /// The full record with another value for one key.
    std::string documentWith(const std::string& key, const std::string& value) const;
    std::string documentWithout(const std::string& key) const;
};

/// How a failed test names the record.
void PrintTo(const RecordRow& row, std::ostream* stream);

/// Each room that is tested with support/records_test.cpp lists its records here.
std::vector<RecordRow> recordsOfTheRoom();

/// The message with which a document is refused; empty when it is read.
template <class Record>
std::string refusalOf(std::string_view document) {
    try {
        static_cast<void>(decodeJSON<Record>(document));
    } catch (const JSONDecodingError& error) {
        return error.what();
    }
    return {};
}

/// `full` is the record in which every key has its value, made in C++.
template <class Record>
RecordRow recordRow(std::string name, std::vector<KeyRow> keys, Record full) {
    RecordRow row{std::move(name), std::move(keys), {}, {}, {}, {}};
    row.refusal = [](std::string_view document) -> std::optional<std::string> {
        try {
            static_cast<void>(decodeJSON<Record>(document));
            return std::nullopt;
        } catch (const JSONDecodingError& error) {
            return error.path() + " | " + error.what();
        }
    };
    row.isFull = [full = std::move(full)](std::string_view document) {
        return decodeJSON<Record>(document) == full;
    };
    row.equal = [](std::string_view one, std::string_view other) {
        return decodeJSON<Record>(one) == decodeJSON<Record>(other);
    };
    if constexpr (JSONWritable<Record>)
        row.rewritten = [](std::string_view document, JSONFormat format) {
            return encodeJSON(decodeJSON<Record>(document), format);
        };
    return row;
}

} // namespace kinovane::test
