// SPDX-License-Identifier: Apache-2.0

#include "schema.hpp"

#include <cmath>
#include <string>

#include "common/refusal.hpp"

namespace simulator::vistrel {
namespace {

namespace json = boost::json;

std::string_view nameOf(json::kind kind) {
    switch (kind) {
    case json::kind::null:
        return "null";
    case json::kind::bool_:
        return "true or false";
    case json::kind::int64:
        return "a whole number";
    case json::kind::uint64:
        return "a whole number that is too large";
    case json::kind::double_:
        return "a number with a fraction or an exponent";
    case json::kind::string:
        return "text";
    case json::kind::array:
        return "a list";
    case json::kind::object:
        return "an object";
    }
    return "something unknown";
}

void expectType(bool correct, const std::string& path, std::string_view expected, const json::value& found) {
    if (!correct) {
        throw Refusal((path.empty() ? "the manifest" : path) + ": expected " + std::string(expected) +
                      ", found " + std::string(nameOf(found.kind())));
    }
}

void expectMembers(const json::value& value, const std::string& path, std::span<const Field> fields);

/// Calls `expect` with each element of a list and its path.
template <class Expect>
void expectElements(const json::value& value, const std::string& path, const Expect& expect) {
    expectType(value.is_array(), path, "a list", value);
    std::size_t index = 0;
    for (const json::value& element : value.get_array())
        expect(element, path + "[" + std::to_string(index++) + "]");
}

void expectText(const json::value& value, const std::string& path) {
    expectType(value.is_string(), path, "text", value);
}

void expectNumber(const json::value& value, const std::string& path) {
    expectType(value.is_number(), path, "a number", value);
    // A number such as 1e400 is parsed as infinity.
    if (!std::isfinite(value.to_number<double>()))
        throw Refusal(path + ": the number is too large");
}

void expectField(const json::value& value, const std::string& path, const Field& field) {
    switch (field.type) {
    case FieldType::text:
        return expectText(value, path);
    case FieldType::integer:
        return expectType(value.is_int64(), path, "a whole number", value);
    case FieldType::number:
        return expectNumber(value, path);
    case FieldType::flag:
        return expectType(value.is_bool(), path, "true or false", value);
    case FieldType::texts:
        return expectElements(value, path, expectText);
    case FieldType::record:
        return expectMembers(value, path, field.members);
    case FieldType::records:
        return expectElements(value, path, [&](const json::value& element, const std::string& elementPath) {
            expectMembers(element, elementPath, field.members);
        });
    }
}

void expectMembers(const json::value& value, const std::string& path, std::span<const Field> fields) {
    expectType(value.is_object(), path, "an object", value);
    for (const Field& field : fields) {
        const std::string fieldPath = (path.empty() ? "" : path + ".") + std::string(field.key);
        const json::value* member = value.get_object().if_contains(field.key);
        if (field.optional && (member == nullptr || member->is_null()))
            continue;
        if (member == nullptr)
            throw Refusal(fieldPath + " is missing");
        expectField(*member, fieldPath, field);
    }
}

} // namespace

void expectFields(const json::value& manifest, std::span<const Field> fields) {
    expectMembers(manifest, "", fields);
}

} // namespace simulator::vistrel
