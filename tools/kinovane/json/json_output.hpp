// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <boost/json.hpp>

namespace kinovane::tool {

/// The value as one line of JSON that ends with a line feed, without white space; members keep their order.
///
/// Reals have the shortest form that reads back equal (18.0 as 18); infinities and NaN become null. Text that
/// is not UTF-8 gets U+FFFD for each wrong byte. Escaped are, beyond what JSON requires, the other control
/// characters, line and paragraph separators, and bidirectional controls, so that a terminal can show the
/// line.
std::string jsonLine(const boost::json::value& value);

/// The value of JSON that `encodeJSON` made. Throws boost::system::system_error for text that is not JSON.
boost::json::value parsedJSON(std::string_view text);

/// Null when there is none.
template <class Value>
boost::json::value optionalValue(const std::optional<Value>& value) {
    return value ? boost::json::value(*value) : boost::json::value(nullptr);
}

} // namespace kinovane::tool
