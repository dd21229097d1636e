// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <string_view>

#include <boost/json.hpp>

namespace simulator {

namespace json = boost::json;

/// The text as a JSON string with its quotes.
std::string jsonQuoted(std::string_view text);

/// The value over several lines with an indent of two, for files that people open. A number with a fraction
/// has one to three decimal places, so that 2.5 stays "2.5" however often a document is read and written.
std::string pretty(const json::value& value);

} // namespace simulator
