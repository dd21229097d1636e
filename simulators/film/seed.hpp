// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <string_view>

namespace film {

/// A number that is always the same for one text and looks random.
std::uint64_t seedOf(std::string_view text);

/// Another such number, made from a seed and a counter.
std::uint64_t mixed(std::uint64_t seed, std::uint64_t counter);

/// The seed in the small form that documents carry.
std::int64_t shortSeed(std::uint64_t seed);

} // namespace film
