// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <kinovane/handoff.hpp>

namespace kinovane {

/// The paths of the artifacts that are a shot's key frame and clip.
std::string keyframePath(const std::string& shotId);
std::string clipPath(const std::string& shotId);

/// Where a shot ends that starts and lasts so many milliseconds. Nothing if one of the two is unknown or the
/// sum does not fit 64 bits.
std::optional<std::int64_t> endOnTimeline(std::optional<std::int64_t> start,
                                          std::optional<std::int64_t> duration);

/// The planned shots one after the other, each with the assets that hold its key frame and its clip. Ends the
/// process when two assets have the same path, or when a time does not fit 64 bits of milliseconds.
std::vector<VistrelHandoffShot> timelineOf(const std::vector<FilmProductionShot>& planned,
                                           const std::vector<VistrelHandoffAsset>& assets);

} // namespace kinovane
