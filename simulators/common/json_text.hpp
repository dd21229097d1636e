// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <string_view>

#include <boost/json.hpp>

namespace simulator {

/// The text as a JSON string with its quotes. Only what JSON demands is escaped: "/" and everything beyond
/// ASCII stay as they are. Ids are digests over this form, so every byte of it counts.
std::string jsonQuoted(std::string_view text);

/// A number of seconds or decibels: at most three places, at least one, so that 2.5 stays "2.5" however often
/// a document is read and written again.
std::string decimal(double number);

/// The value in one line.
std::string compact(const boost::json::value& value);

/// The value over several lines with an indent of two, for files that people open.
std::string pretty(const boost::json::value& value);

} // namespace simulator
