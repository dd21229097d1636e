// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include <kinovane/film_shots.hpp>
#include <kinovane/workspace.hpp>

namespace kinovane::tool {

/// Which recorded sound belongs to which line or effect. The name of the file begins with the id of the shot
/// and the number of the line or effect in the shot: "shot-01-line-1.wav", "shot-01-effect-2.wav",
/// "shot-01-2-waves.wav". Of several files for one line the one recorded last is used.
class SoundFiles {
  public:
    /// Both arguments must outlive this object.
    SoundFiles(const FilmWorkspaceSnapshot& film, const std::vector<FilmShot>& shots);

    /// The file of a line or an effect; null when none is recorded. `number` counts from 1.
    const FilmArtifact* dialogue(const std::string& shotId, std::size_t number) const;
    const FilmArtifact* effect(const std::string& shotId, std::size_t number) const;

    /// The recorded sounds that belong to no planned line or effect.
    const std::vector<const FilmArtifact*>& unplanned() const noexcept { return unplanned_; }

  private:
    using Key = std::pair<std::string, std::size_t>;
    using Files = std::map<Key, const FilmArtifact*>;

    Files dialogue_;
    Files effects_;
    std::vector<const FilmArtifact*> unplanned_;
};

} // namespace kinovane::tool
