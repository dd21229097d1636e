// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <kinovane/json.hpp>

namespace kinovane::test {

enum class KeyType { text, integer, real, boolean, list, object, map };

/// A JSON key of a record, with a value that no other key of the record has.
struct KeyRow {
    std::string key;
    KeyType type;
    std::string value; ///< As compact JSON.
    bool optional = false;
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

/// A record type, with a value for every key, and how it is decoded and encoded.
struct RecordRow {
    std::string name;
    std::vector<KeyRow> keys; ///< In declared order.
    /// The error of a failed decoding, as "path | message"; absent when it succeeds.
    std::optional<std::string> (*decodingError)(std::string_view document);
    /// Whether the document holds the record in which every key has its value.
    std::function<bool(std::string_view document)> isFullRecord;
    /// Whether both documents hold equal records.
    bool (*areEqual)(std::string_view one, std::string_view other);
    /// Decodes and encodes again; null for a record that is only decoded.
    std::string (*reencoded)(std::string_view document, JSONFormat format);

    /// The record as compact JSON with only the given keys.
    std::string documentOf(const std::vector<KeyRow>& some) const;
    std::string fullDocument() const { return documentOf(keys); }
    /// A list that holds the full record once.
    std::string fullList() const { return "[" + fullDocument() + "]"; }
    /// The full record with another value for one key.
    std::string documentWith(const std::string& key, const std::string& value) const;
    std::string documentWithout(const std::string& key) const;
};

/// The message with which a document is refused; empty when it is decoded.
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
    row.decodingError = [](std::string_view document) -> std::optional<std::string> {
        try {
            static_cast<void>(decodeJSON<Record>(document));
            return std::nullopt;
        } catch (const JSONDecodingError& error) {
            return error.path() + " | " + error.what();
        }
    };
    row.isFullRecord = [full = std::move(full)](std::string_view document) {
        return decodeJSON<Record>(document) == full;
    };
    row.areEqual = [](std::string_view one, std::string_view other) {
        return decodeJSON<Record>(one) == decodeJSON<Record>(other);
    };
    if constexpr (JSONWritable<Record>)
        row.reencoded = [](std::string_view document, JSONFormat format) {
            return encodeJSON(decodeJSON<Record>(document), format);
        };
    return row;
}

} // namespace kinovane::test
