// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <kinovane/export.hpp>
#include <kinovane/film_project.hpp>
#include <kinovane/production_plan.hpp>
#include <kinovane/workspace.hpp>

/// The shots of a film, each with everything that a workspace's documents say about it.
namespace kinovane {

/// One planned shot: its record in the production plan, its position on the timeline, and the records of
/// other documents that belong to it. An independent value, like every record.
struct KINOVANE_EXPORT FilmShot {
    FilmProductionShot planned; ///< From production-plan.json.
    std::int64_t order = 0;     ///< Position in the plan, from 0.

    /// Start and length in milliseconds, rounded as in the handoff. Absent when the value does not fit 64
    /// bits of milliseconds; no later shot has a start then.
    std::optional<std::int64_t> startMilliseconds;
    std::optional<std::int64_t> durationMilliseconds; ///< In the same way.

    /// From film-project.json: the last entry for this shot.
    std::optional<FilmShotState> state;

    /// The artifacts that the handoff links with the shot: those of an exported kind whose path is
    /// "frames/<id>.png" and "clips/<id>.mp4"; the last one recorded of several. Nothing is known about their
    /// files: see FilmWorkspaceSnapshot::artifactURL and VistrelHandoffBuilder::audit.
    std::optional<FilmArtifact> keyframe;
    std::optional<FilmArtifact> clip; ///< In the same way.

    /// The cast members of the shot, in the order of FilmProductionShot::characters. An id that the plan's
    /// cast does not have is left out; of several members with one id the first counts.
    std::vector<FilmCastMember> cast;
    /// The location of the shot, if the plan has it; the first of several with one id.
    std::optional<FilmLocation> location;

    bool operator==(const FilmShot&) const = default;
};

/// The planned shots in film order; none without a production plan. Does not touch the disk. The time taken
/// is proportional to the number of shots and artifacts.
KINOVANE_EXPORT std::vector<FilmShot> shots(const FilmWorkspaceSnapshot& snapshot);

} // namespace kinovane
