// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <concepts>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kinovane::tool {

/// A JSON value as text.
///
/// Throws JSONEncodingError for text that is not UTF-8 and for numbers that are not finite.
class JSONValue {
  public:
    // Implicit, so that values can be passed to JSONObject::add and JSONList::add.
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

    /// A value from text that is already JSON.
    static JSONValue fromJSON(std::string text);

    const std::string& text() const { return text_; }

  private:
    JSONValue() = default;

    std::string text_;
};

/// A JSON object; members keep the order in which they are added.
class JSONObject {
  public:
    JSONObject& add(std::string_view key, const JSONValue& value);
    // NOLINTNEXTLINE(google-explicit-constructor): added like any other value
    operator JSONValue() const { return JSONValue::fromJSON("{" + members_ + "}"); }

  private:
    std::string members_;
};

/// A JSON list.
class JSONList {
  public:
    JSONList& add(const JSONValue& value);
    // NOLINTNEXTLINE(google-explicit-constructor): added like any other value
    operator JSONValue() const { return JSONValue::fromJSON("[" + values_ + "]"); }

  private:
    std::string values_;
};

} // namespace kinovane::tool
