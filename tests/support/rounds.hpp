// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdlib>

namespace kinovane::test {

/// How often a test repeats a race: `usual` times, ten times as often if KINOVANE_LONG_TESTS is set in the
/// environment, as `scripts/test --all` does.
inline int raceRounds(int usual) {
    return std::getenv("KINOVANE_LONG_TESTS") != nullptr ? 10 * usual : usual;
}

} // namespace kinovane::test
