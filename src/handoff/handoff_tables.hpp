// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <kinovane/handoff.hpp>

#include "common/json/table.hpp"

/// The JSON keys of the handoff manifest and of the importer's receipt.
namespace kinovane::json {

template <>
struct Table<VistrelHandoffSource> {
    static constexpr std::tuple fields{
        field("projectId", &VistrelHandoffSource::projectId),
        field("projectRoot", &VistrelHandoffSource::projectRoot),
        field("runManifest", &VistrelHandoffSource::runManifest),
        field("projectContractVersion", &VistrelHandoffSource::projectContractVersion),
        field("updatedAt", &VistrelHandoffSource::updatedAt),
    };
};

template <>
struct Table<VistrelHandoffProject> {
    static constexpr std::tuple fields{
        field("title", &VistrelHandoffProject::title),
        field("idea", &VistrelHandoffProject::idea),
        field("logline", &VistrelHandoffProject::logline),
        field("synopsis", &VistrelHandoffProject::synopsis),
        field("theme", &VistrelHandoffProject::theme),
        field("durationMilliseconds", &VistrelHandoffProject::durationMilliseconds),
        field("fps", &VistrelHandoffProject::fps),
        field("aspectRatio", &VistrelHandoffProject::aspectRatio),
        field("width", &VistrelHandoffProject::width),
        field("height", &VistrelHandoffProject::height),
    };
};

template <>
struct Table<VistrelHandoffShot> {
    static constexpr std::tuple fields{
        field("id", &VistrelHandoffShot::id),
        field("order", &VistrelHandoffShot::order),
        field("purpose", &VistrelHandoffShot::purpose),
        field("prompt", &VistrelHandoffShot::prompt),
        field("framePrompt", &VistrelHandoffShot::framePrompt),
        field("timelineStartMilliseconds", &VistrelHandoffShot::timelineStartMilliseconds),
        field("durationMilliseconds", &VistrelHandoffShot::durationMilliseconds),
        field("characterIds", &VistrelHandoffShot::characterIds),
        field("locationId", &VistrelHandoffShot::locationId),
        field("transition", &VistrelHandoffShot::transition),
        field("take", &VistrelHandoffShot::take),
        field("seed", &VistrelHandoffShot::seed),
        field("keyframeAssetId", &VistrelHandoffShot::keyframeAssetId),
        field("clipAssetId", &VistrelHandoffShot::clipAssetId),
        field("dialogue", &VistrelHandoffShot::dialogue),
        field("soundEffects", &VistrelHandoffShot::soundEffects),
    };
};

template <>
struct Table<VistrelHandoffAsset> {
    static constexpr std::tuple fields{
        field("id", &VistrelHandoffAsset::id),
        field("kind", &VistrelHandoffAsset::kind),
        field("relativePath", &VistrelHandoffAsset::relativePath),
        field("sha256", &VistrelHandoffAsset::sha256),
        field("bytes", &VistrelHandoffAsset::bytes),
        field("contentType", &VistrelHandoffAsset::contentType),
        field("source", &VistrelHandoffAsset::source),
    };
};

template <>
struct Table<VistrelHandoff> {
    static constexpr std::tuple fields{
        field("contractVersion", &VistrelHandoff::contractVersion),
        field("exportedAt", &VistrelHandoff::exportedAt),
        field("source", &VistrelHandoff::source),
        field("project", &VistrelHandoff::project),
        field("cast", &VistrelHandoff::cast),
        field("locations", &VistrelHandoff::locations),
        field("shots", &VistrelHandoff::shots),
        field("assets", &VistrelHandoff::assets),
        field("proof", &VistrelHandoff::proof),
    };
};

template <>
struct Table<VistrelImportReceipt> {
    static constexpr std::tuple fields{
        field("ok", &VistrelImportReceipt::ok),
        field("project_id", &VistrelImportReceipt::projectId),
        field("episode_id", &VistrelImportReceipt::episodeId),
        field("imported_scenes", &VistrelImportReceipt::importedScenes),
        field("imported_shots", &VistrelImportReceipt::importedShots),
        field("imported_assets", &VistrelImportReceipt::importedAssets),
        field("project_url", &VistrelImportReceipt::projectURL),
    };
};

} // namespace kinovane::json
