// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "documents.hpp"

namespace film {

/// A line of dialogue as it is recorded. Times count from the start of the shot.
struct Line {
    std::string path, speaker, text;
    std::uint64_t seed = 0;
    std::int64_t startMilliseconds = 0, milliseconds = 0;
};

/// A sound effect as it is recorded. Times count from the start of the shot.
struct Effect {
    std::string path;
    std::uint64_t seed = 0;
    std::int64_t startMilliseconds = 0, milliseconds = 0;
    double levelDb = 0;
};

/// A shot of the plan with its place on the timeline and its current take.
struct Shot {
    std::string id;
    std::int64_t take = 1;
    /// Of the current take: a new take looks different.
    std::uint64_t seed = 0;
    std::int64_t startMilliseconds = 0, milliseconds = 0;
    std::vector<Line> lines;
    std::vector<Effect> effects;

    std::string framePath() const { return "frames/" + id + ".png"; }
    std::string clipPath() const { return "clips/" + id + ".mp4"; }
};

std::vector<Shot> shotsOf(const json::object& project, const json::object& plan);

/// Sets how far a shot is, and which take it has.
void markShot(json::object& project, const Shot& shot, const char* status);

/// Shots of this state wait for a new take.
inline constexpr const char* newTake = "new-take";

/// Gives every shot that waits for a new take the next number.
void beginNewTakes(json::object& project);

/// Brings status and takes of the plan's shots to what the project says.
void copyShotStates(const json::object& project, json::object& plan);

} // namespace film
