// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "documents.hpp"

namespace simulator::film {

/// A recorded line of dialogue. Its start counts from the start of the shot.
struct Line {
    std::string path, speaker, text;
    std::int64_t startMilliseconds = 0, milliseconds = 0;
};

/// A shot of the plan with its position on the timeline and its current take.
struct Shot {
    std::string id;
    std::int64_t take = 1;
    std::int64_t startMilliseconds = 0, milliseconds = 0;
    std::vector<Line> lines;
    std::vector<std::string> effectPaths;

    std::string framePath() const { return "frames/" + id + ".png"; }
    std::string clipPath() const { return "clips/" + id + ".mp4"; }
    std::string takeName() const { return id + " take " + std::to_string(take); }
};

std::vector<Shot> shotsOf(const json::object& project, const json::object& plan);

/// The current takes of all shots, such as "shot-01 take 1, shot-02 take 3".
std::string takeNames(const std::vector<Shot>& shots);
std::int64_t durationOf(const std::vector<Shot>& shots);

/// Sets the status and the take of a shot in the project.
void markShot(json::object& project, const Shot& shot, const char* status);

/// The status of a shot that waits for a new take.
inline constexpr const char* newTake = "new-take";

/// Gives every shot that waits for a new take the next number.
void beginNewTakes(json::object& project);

/// Copies status and takes of the shots from the project to the plan.
void copyShotStates(const json::object& project, json::object& plan);

} // namespace simulator::film
