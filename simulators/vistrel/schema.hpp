// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <span>
#include <string_view>

#include <boost/json.hpp>

namespace simulator::vistrel {

enum class FieldType { text, integer, number, flag, texts, record, records };

/// A key of a JSON object and the type of its value. An optional key may be missing or null.
struct Field {
    std::string_view key;
    FieldType type;
    bool optional = false;
    std::span<const Field> members = {}; ///< Of a record, or of each record in a list.
};

constexpr Field text(std::string_view key) { return {key, FieldType::text}; }
constexpr Field integer(std::string_view key) { return {key, FieldType::integer}; }
constexpr Field number(std::string_view key) { return {key, FieldType::number}; }
constexpr Field flag(std::string_view key) { return {key, FieldType::flag}; }
constexpr Field texts(std::string_view key) { return {key, FieldType::texts}; }
constexpr Field record(std::string_view key, std::span<const Field> members) {
    return {key, FieldType::record, false, members};
}
constexpr Field records(std::string_view key, std::span<const Field> members) {
    return {key, FieldType::records, false, members};
}
constexpr Field optional(Field field) {
    field.optional = true;
    return field;
}

/// Checks the members of the manifest in the order of the fields. The first missing key or value of the wrong
/// type is a Refusal that says where it is, such as `shots[2].take: expected a whole number, found text`.
void expectFields(const boost::json::value& manifest, std::span<const Field> fields);

} // namespace simulator::vistrel
