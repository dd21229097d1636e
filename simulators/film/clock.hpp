// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>

namespace film {

/// The time stamp to write: the text in the environment variable FILM_CLOCK as it stands, or else the present
/// time in UTC, such as 2026-03-01T14:05:09Z.
std::string timeStamp();

} // namespace film
