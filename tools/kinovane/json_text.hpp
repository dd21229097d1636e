// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <concepts>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kinovane::tool {

/// A JSON text under construction: every value knows how to write itself once.
///
/// Throws JSONEncodingError for text that is not UTF-8 and for numbers that are not finite.
class JSONValue {
  public:
    // A value is made of whatever is added to an object or a list.
    // NOLINTBEGIN(google-explicit-constructor)
    JSONValue(std::nullptr_t /*null*/) : text_("null") {}
    template <std::same_as<bool> Boolean>
    JSONValue(Boolean value) : text_(value ? "true" : "false") {}
    template <std::integral Integer>
        requires(!std::same_as<Integer, bool>)
    JSONValue(Integer value) : text_(std::to_string(value)) {}
    JSONValue(double value);
    JSONValue(std::string_view value);
    JSONValue(const std::string& value) : JSONValue(std::string_view(value)) {}
    JSONValue(const char* value) : JSONValue(std::string_view(value)) {}
    template <class Value>
    JSONValue(const std::optional<Value>& value)
        : JSONValue(value ? JSONValue(*value) : JSONValue(nullptr)) {}
    // NOLINTEND(google-explicit-constructor)

    /// A value that is JSON already.
    static JSONValue ready(std::string text);

    const std::string& text() const { return text_; }

  private:
    JSONValue() = default;

    std::string text_;
};

/// Members in the order in which they are added.
class JSONObject {
  public:
    JSONObject& add(std::string_view key, const JSONValue& value);
    // NOLINTNEXTLINE(google-explicit-constructor): it is added like any other value
    operator JSONValue() const { return JSONValue::ready("{" + members_ + "}"); }

  private:
    std::string members_;
};

class JSONList {
  public:
    JSONList& add(const JSONValue& value);
    // NOLINTNEXTLINE(google-explicit-constructor): it is added like any other value
    operator JSONValue() const { return JSONValue::ready("[" + values_ + "]"); }

  private:
    std::string values_;
};

} // namespace kinovane::tool
