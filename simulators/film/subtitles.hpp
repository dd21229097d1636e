// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace film {

/// One line of dialogue on the film's timeline.
struct Cue {
    std::string speaker, text;
    std::int64_t startMilliseconds = 0, endMilliseconds = 0;
};

std::string encodeSrt(const std::vector<Cue>& cues);
std::string encodeVtt(const std::vector<Cue>& cues);

} // namespace film
