// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>

namespace simulator::film {

/// The value of the environment variable FILM_CLOCK, or else the current time in UTC as
/// 2026-03-01T14:05:09Z.
std::string timeStamp();

} // namespace simulator::film
