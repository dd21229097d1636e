// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include <kinovane/handoff.hpp>

namespace kinovane::tool {

/// The progress in one line that is narrower than `columns`: a bar if there are at least 100 columns, then as
/// many as fit of percentage, files, bytes, average rate and time left, then the current file, shortened in
/// its middle. `seconds` is the time spent so far. The rate is shown after one second; the time left after
/// three, when 5 % are done.
std::string progressText(const VerificationProgress& progress, double seconds, std::size_t columns);

/// "41.2 MB in 0.3 s, 137.3 MB/s". Without bytes there is no rate.
std::string throughputText(std::uint64_t bytes, double seconds);

} // namespace kinovane::tool
