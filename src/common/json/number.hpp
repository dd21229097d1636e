// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

/// The exact value of a JSON number's text. The text is known to be well formed.
namespace kinovane::json {

enum class NumberFault { none, fraction, tooLarge };

struct IntegerValue {
    std::int64_t value = 0;
    NumberFault fault = NumberFault::none;
};

/// The value as an integer. "5", "5.0" and "5e3" are whole; nothing is rounded on the way.
IntegerValue integerValue(std::string_view text);

/// The nearest double; absent when the number is too large for one. A number too small for one is 0.
std::optional<double> realValue(std::string_view text);

} // namespace kinovane::json
