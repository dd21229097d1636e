// SPDX-License-Identifier: Apache-2.0

#include <chrono>
#include <cmath>
#include <ctime>
#include <exception>
#include <unordered_map>
#include <utility>

#include <kinovane/handoff.hpp>

#include "common/digest.hpp"
#include "common/fatal.hpp"
#include "common/files/atomic_file.hpp"
#include "common/files/location.hpp"
#include "common/files/regular_file.hpp"
#include "handoff/artifact_examiner.hpp"
#include "handoff/file_digest.hpp"
#include "handoff/handoff_document.hpp"
#include "handoff/verification.hpp"

namespace kinovane {

namespace fs = std::filesystem;

namespace {

constexpr const char* handoffContract = "quexrun/film-vistrel-handoff.v1";
constexpr std::int64_t defaultFPS = 24;
constexpr const char* defaultAspectRatio = "16:9";

using AssetsByPath = std::unordered_map<std::string_view, const VistrelHandoffAsset*>;

/// The assets of a project whose artifacts are all sound; throws what the first bad one threw.
std::vector<VistrelHandoffAsset> verifiedAssets(const FilmWorkspaceSnapshot& snapshot,
                                                const HandoffBuildOptions& options) {
    const std::vector<const FilmArtifact*> artifacts = exportedArtifacts(snapshot.project);
    std::vector<VistrelHandoffAsset> assets(artifacts.size());
    std::exception_ptr firstFailure;
    verify(
        snapshot.root, artifacts, options,
        {.onSound = [&](std::size_t index,
                        ArtifactExaminer& examiner) { assets[index] = examiner.assetOf(*artifacts[index]); },
         .onBad = [&](std::size_t /*index*/,
                      std::exception_ptr failure) { firstFailure = std::move(failure); },
         .stopAtFirstFailure = true});
    if (firstFailure)
        std::rethrow_exception(firstFailure);
    return assets;
}

AssetsByPath byPath(const std::vector<VistrelHandoffAsset>& assets) {
    AssetsByPath result;
    result.reserve(assets.size());
    for (const VistrelHandoffAsset& asset : assets)
        if (!result.emplace(asset.relativePath, &asset).second)
            fatalStop("Duplicate values for key: '" + asset.relativePath + "'");
    return result;
}

std::optional<std::string> assetIDAt(const std::string& path, const AssetsByPath& assets) {
    const auto found = assets.find(path);
    if (found == assets.end())
        return std::nullopt;
    return found->second->id;
}

/// Halves are rounded away from zero.
std::int64_t milliseconds(double seconds) {
    constexpr double limit = 9223372036854775808.0; // 2^63
    const double rounded = std::round(seconds * 1000);
    const bool fits = rounded >= -limit && rounded < limit; // Not so for NaN.
    if (!fits)
        fatalStop("A duration of " + std::to_string(seconds) +
                  " seconds does not fit 64 bits of milliseconds");
    return static_cast<std::int64_t>(rounded);
}

std::vector<VistrelHandoffShot> timelineOf(const std::vector<FilmProductionShot>& planned,
                                           const AssetsByPath& assets) {
    std::vector<VistrelHandoffShot> shots;
    shots.reserve(planned.size());
    std::int64_t start = 0;
    for (const FilmProductionShot& shot : planned) {
        const std::int64_t duration = milliseconds(shot.durationSeconds);
        shots.push_back({
            .id = shot.id,
            .order = static_cast<std::int64_t>(shots.size()),
            .purpose = shot.purpose,
            .prompt = shot.prompt,
            .framePrompt = shot.framePrompt,
            .timelineStartMilliseconds = start,
            .durationMilliseconds = duration,
            .characterIds = shot.characters,
            .locationId = shot.location,
            .transition = shot.transition,
            .take = shot.take,
            .seed = shot.selectedSeed.value_or(shot.seed),
            .keyframeAssetId = assetIDAt("frames/" + shot.id + ".png", assets),
            .clipAssetId = assetIDAt("clips/" + shot.id + ".mp4", assets),
            .dialogue = shot.dialogue,
            .soundEffects = shot.soundEffects,
        });
        if (__builtin_add_overflow(start, duration, &start))
            fatalStop("The film's timeline does not fit 64 bits of milliseconds");
    }
    return shots;
}

/// Such as 2026-03-01T14:05:09Z.
std::string currentTime() {
    const std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    std::tm utc{};
    ::gmtime_r(&now, &utc);
    char text[32]; // NOLINT(*-avoid-c-arrays): what strftime takes
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
    header.durationMilliseconds = milliseconds(plan.plannedDurationSeconds);
    header.fps = plan.target.fps.value_or(defaultFPS);
    header.aspectRatio = plan.target.aspectRatio.value_or(defaultAspectRatio);
    header.width = plan.target.width;
    header.height = plan.target.height;
    return header;
}

} // namespace

VistrelHandoff VistrelHandoffBuilder::build(const FilmWorkspaceSnapshot& from, const std::string& projectRoot,
                                            std::optional<std::string> exportedAt,
                                            const HandoffBuildOptions& options) {
    if (!from.productionPlan)
        throw VistrelHandoffError(VistrelHandoffError::productionPlanMissing{});
    const FilmProject& project = from.project;
    const FilmProductionPlan& plan = *from.productionPlan;

    std::vector<VistrelHandoffAsset> assets = verifiedAssets(from, options);
    const AssetsByPath assetsByPath = byPath(assets);

    VistrelHandoff handoff;
    handoff.contractVersion = handoffContract;
    handoff.exportedAt = exportedAt ? std::move(*exportedAt) : currentTime();
    handoff.source = {project.projectId, projectRoot, "run.json", project.contractVersion, project.updatedAt};
    handoff.shots = timelineOf(plan.shots, assetsByPath);
    handoff.project = headerOf(project, plan, from.treatment);
    handoff.cast = plan.cast;
    handoff.locations = plan.locations;
    handoff.assets = std::move(assets);
    handoff.proof = project.proof;
    return handoff;
}

std::string VistrelHandoffBuilder::write(const VistrelHandoff& handoff, const fs::path& to) {
    const TextBuffer document = documentOf(handoff);
    if (const fs::path parent = to.parent_path(); !parent.empty() && !holdsNUL(to.native()))
        fs::create_directories(parent);
    FileDigest digests;
    AtomicFile file(to);
    for (const std::string_view piece : document.pieces())
        file.write(piece);
    file.flush();
    // Before the old file is replaced, so that this cannot fail any more afterwards.
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
