// SPDX-License-Identifier: Apache-2.0

// Every record of the workspace's documents and of the handoff: any text is decoded, or refused with a
// legible message.

#include <algorithm>
#include <type_traits>

#include <kinovane/handoff.hpp>
#include <kinovane/workspace.hpp>

#include "decoding.hpp"
#include "record_choice.hpp"
#include "target.hpp"

namespace kinovane::fuzz {
namespace {

using Documents =
    RecordChoice<FilmProject, FilmBrief, FilmApproval, FilmDepartmentTask, FilmShotState, FilmReviewRequest,
                 FilmJob, FilmProductionConfiguration, FilmModelConfiguration, FilmArtifact, FilmProof,
                 FilmIssue, FilmProductionPlan, FilmTarget, FilmCastMember, FilmLocation, FilmProductionShot,
                 FilmDialogueLine, FilmSoundEffect, FilmTreatment, VistrelHandoff, VistrelHandoffSource,
                 VistrelHandoffProject, VistrelHandoffShot, VistrelHandoffAsset>;

/// Checks the member functions of a snapshot that do not read the disk.
void checkSnapshot(const FilmProject& project) {
    FilmWorkspaceSnapshot snapshot;
    snapshot.root = "/film";
    snapshot.project = project;
    for (const FilmArtifact& artifact : project.artifacts) {
        const auto latest = snapshot.latestArtifact(artifact.kind);
        const auto last = std::find_if(project.artifacts.rbegin(), project.artifacts.rend(),
                                       [&](const FilmArtifact& each) { return each.kind == artifact.kind; });
        promise(latest == *last, "the latest artifact of a kind is the one listed last", artifact.kind);
        const std::string location = snapshot.artifactURL(artifact).native();
        promise(artifact.path.starts_with('/') ? location == artifact.path : location.starts_with("/film"),
                "an artifact lies where its path says", location);
        promise(artifact.id() == artifact.kind + ":" + artifact.path + ":" + artifact.sha256,
                "an artifact's id is made of kind, path and digest", artifact.id());
    }
}

struct Decode {
    template <class Record>
    void operator()(std::string_view document) const {
        const auto outcome = decodeWithinMemory<Record>(document);
        if constexpr (std::is_same_v<Record, FilmProject>)
            if (const auto* project = std::get_if<FilmProject>(&outcome))
                checkSnapshot(*project);
    }
};

} // namespace
} // namespace kinovane::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kinovane::fuzz;
    Documents::apply(textOf(data, size), Decode());
    return 0;
}
