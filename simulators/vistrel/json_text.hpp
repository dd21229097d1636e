#pragma once

#include <boost/json.hpp>

#include <string>
#include <string_view>

namespace vistrel {

/// The text as a JSON string with its quotes. Only what JSON demands is escaped: "/" and everything beyond
/// ASCII stay as they are. Asset ids are digests over this form, so every byte of it counts.
std::string jsonQuoted(std::string_view text);

/// The value over several lines with an indent of two, for files that people open.
std::string pretty(const boost::json::value& value);

} // namespace vistrel
