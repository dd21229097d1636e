// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <vector>

#include <kinovane/handoff.hpp>

namespace kinovane {

/// The planned shots one after the other, each with the assets that hold its key frame and its clip. Ends the
/// process when two assets have the same path, or when a time does not fit 64 bits of milliseconds.
std::vector<VistrelHandoffShot> timelineOf(const std::vector<FilmProductionShot>& planned,
                                           const std::vector<VistrelHandoffAsset>& assets);

} // namespace kinovane
