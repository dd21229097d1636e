// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <map>
#include <string>
#include <vector>

#include <kinovane/film_project.hpp>

namespace kinovane::tool {

/// The paths of the recorded sounds by the id of the shot: of the artifacts of the kinds "dialogue" and
/// "sound-effect" whose file name is the shot's id and a number, such as "shot-01-line-1.wav",
/// "shot-01-effect-1.wav" and "shot-01-1-waves.wav". There are also entries for texts that are no ids.
std::map<std::string, std::vector<std::string>> soundsByShot(const std::vector<FilmArtifact>& artifacts);

} // namespace kinovane::tool
