// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>
#include <string>

namespace kinovane::tool {

/// The time stamp for a manifest: the text that was given with --exported-at, otherwise the time that the
/// environment variable SOURCE_DATE_EPOCH holds in seconds since 1970, as "2026-03-01T14:05:09Z", otherwise
/// none, for the current time. Throws UsageError for text that is not UTF-8, and for a variable that is not a
/// whole number of seconds up to the end of the year 9999.
std::optional<std::string> exportTime(const std::optional<std::string>& given, const char* sourceDateEpoch);

} // namespace kinovane::tool
