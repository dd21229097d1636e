// SPDX-License-Identifier: Apache-2.0

#include <chrono>
#include <ctime>
#include <utility>

#include <kinovane/handoff.hpp>

#include "common/digest.hpp"
#include "common/files/atomic_file.hpp"
#include "common/files/location.hpp"
#include "common/files/regular_file.hpp"
#include "handoff/asset_identity.hpp"
#include "handoff/exported_kinds.hpp"
#include "handoff/file_digest.hpp"
#include "handoff/handoff_document.hpp"
#include "handoff/milliseconds.hpp"
#include "handoff/timeline.hpp"
#include "handoff/verification.hpp"

namespace kinovane {

namespace fs = std::filesystem;

namespace {

constexpr const char* handoffContract = "quexrun/film-vistrel-handoff.v1";
constexpr std::int64_t defaultFPS = 24;
constexpr const char* defaultAspectRatio = "16:9";

/// `artifacts` were all verified.
std::vector<VistrelHandoffAsset> assetsOf(const std::vector<const FilmArtifact*>& artifacts) {
    Digest digest;
    std::vector<VistrelHandoffAsset> assets;
    assets.reserve(artifacts.size());
    for (const FilmArtifact* artifact : artifacts)
        assets.push_back({
            .id = stableAssetID(*artifact, digest),
            .kind = artifact->kind,
            .relativePath = artifact->path,
            .sha256 = artifact->sha256,
            .bytes = artifact->bytes,
            .contentType = artifact->contentType,
            .source = artifact->source,
        });
    return assets;
}

/// Such as 2026-03-01T14:05:09Z.
std::string currentTime() {
    const std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    std::tm utc{};
    ::gmtime_r(&now, &utc);
    char text[32]; // NOLINT(*-avoid-c-arrays): for strftime
    return {text, std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &utc)};
}

VistrelHandoffProject headerOf(const FilmProject& project, const FilmProductionPlan& plan,
                               const std::optional<FilmTreatment>& treatment) {
    VistrelHandoffProject header;
    header.title = project.title;
    header.idea = project.idea;
    if (treatment) {
        header.logline = treatment->logline;
        header.synopsis = treatment->synopsis;
        header.theme = treatment->theme;
    }
    header.durationMilliseconds = roundedMilliseconds(plan.plannedDurationSeconds);
    header.fps = plan.target.fps.value_or(defaultFPS);
    header.aspectRatio = plan.target.aspectRatio.value_or(defaultAspectRatio);
    header.width = plan.target.width;
    header.height = plan.target.height;
    return header;
}

/// Whether one of the directories that a location names is another kind of file.
bool leadsThroughFile(fs::path location) {
    std::error_code error;
    while (!fs::exists(location, error) && location.has_relative_path())
        location = location.parent_path();
    return fs::exists(location, error) && !fs::is_directory(location, error);
}

void createDirectories(const fs::path& location) {
    std::error_code error;
    fs::create_directories(location, error);
    // Below a file, libc++ reports only that something exists.
    if (error == std::errc::file_exists && leadsThroughFile(location))
        error = std::make_error_code(std::errc::not_a_directory);
    if (error)
        throw fs::filesystem_error("cannot create directories", location, error);
}

} // namespace

VistrelHandoff VistrelHandoffBuilder::build(const FilmWorkspaceSnapshot& from, const std::string& projectRoot,
                                            std::optional<std::string> exportedAt,
                                            const HandoffBuildOptions& options) {
    if (!from.productionPlan)
        throw VistrelHandoffError(VistrelHandoffError::productionPlanMissing{});
    const FilmProject& project = from.project;
    const FilmProductionPlan& plan = *from.productionPlan;

    const std::vector<const FilmArtifact*> artifacts = exportedArtifacts(project);
    requireSound(from.root, artifacts, options);

    VistrelHandoff handoff;
    handoff.contractVersion = handoffContract;
    handoff.exportedAt = exportedAt ? std::move(*exportedAt) : currentTime();
    handoff.source = {project.projectId, projectRoot, "run.json", project.contractVersion, project.updatedAt};
    handoff.assets = assetsOf(artifacts);
    handoff.shots = timelineOf(plan.shots, handoff.assets);
    handoff.project = headerOf(project, plan, from.treatment);
    handoff.cast = plan.cast;
    handoff.locations = plan.locations;
    handoff.proof = project.proof;
    return handoff;
}

std::string VistrelHandoffBuilder::write(const VistrelHandoff& handoff, const fs::path& to) {
    const TextBuffer document = documentOf(handoff);
    if (const fs::path parent = to.parent_path(); !parent.empty() && !holdsNUL(to.native()))
        createDirectories(parent);
    FileDigest digests;
    AtomicFile file(to);
    for (const std::string_view chunk : document.chunks())
        file.write(chunk);
    file.flush();
    // Before the old file is replaced: a failure here must leave it in place.
    std::string digest = digests.of(file);
    file.replaceTarget();
    return digest;
}

std::string VistrelHandoffBuilder::sha256(const fs::path& file) {
    RegularFile opened(file);
    return FileDigest().of(opened);
}

std::string VistrelHandoffBuilder::sha256(std::span<const std::byte> bytes) { return digestText(bytes); }

} // namespace kinovane
