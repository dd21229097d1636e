// SPDX-License-Identifier: Apache-2.0

#include <cmath>

#include "common/refusal.hpp"
#include "manifest.hpp"

namespace simulator::vistrel {
namespace {

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

void expectScalar(const json::value& value, std::string_view type, const std::string& path) {
    if (type == "text") {
        expectType(value.is_string(), path, "text", value);
    } else if (type == "integer") {
        expectType(value.is_int64(), path, "a whole number", value);
    } else if (type == "flag") {
        expectType(value.is_bool(), path, "true or false", value);
    } else {
        expectType(value.is_number(), path, "a number", value);
        // A number such as 1e400 is parsed as infinity.
        if (!std::isfinite(value.to_number<double>()))
            throw Refusal(path + ": the number is too large");
    }
}

void expectMember(const json::object& object, std::string_view key, const json::value& schema,
                  const std::string& path) {
    const json::value* member = object.if_contains(key);
    if (!schema.is_string() || !schema.get_string().ends_with('?')) {
        if (member == nullptr)
            throw Refusal(path + " is missing");
        expectSchema(*member, schema, path);
    } else if (member != nullptr && !member->is_null()) {
        const std::string_view type = schema.get_string();
        expectScalar(*member, type.substr(0, type.size() - 1), path);
    }
}

} // namespace

void expectSchema(const json::value& value, const json::value& schema, const std::string& path) {
    if (const json::object* members = schema.if_object()) {
        expectType(value.is_object(), path, "an object", value);
        for (const auto& [key, member] : *members)
            expectMember(value.get_object(), key, member,
                         (path.empty() ? "" : path + ".") + std::string(key));
    } else if (const json::array* elements = schema.if_array()) {
        expectType(value.is_array(), path, "a list", value);
        std::size_t index = 0;
        for (const json::value& element : value.get_array())
            expectSchema(element, elements->front(), path + "[" + std::to_string(index++) + "]");
    } else {
        expectScalar(value, schema.as_string(), path);
    }
}

} // namespace simulator::vistrel
