// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <nlohmann/json.hpp>

#include <kinovane/handoff.hpp>

/// The records that the macro of nlohmann::json can describe, for decoding and encoding.
namespace kinovane {

NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(FilmDepartmentTask, id, role, phase, dependsOn, synthesis, status,
                                   attempts)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(FilmModelConfiguration, imageMaster, imageShot, video, visionInspector,
                                   speechAsr, speechTts, sfx, music)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(FilmProductionConfiguration, mode, takesPerShot, generateScore,
                                   inspectGeneratedMedia, maxParallelAgents, piTimeoutSeconds,
                                   mediaTimeoutSeconds, models)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(FilmArtifact, bytes, contentType, createdAt, kind, path, sha256, source)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(FilmProof, creation, clips, assembly, dialogue, sound, captions,
                                   inspection, review, humanReview, delivery)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(FilmDialogueLine, speaker, text, startSeconds, delivery)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(FilmSoundEffect, prompt, startSeconds, durationSeconds, levelDb, seed)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(VistrelHandoffSource, projectId, projectRoot, runManifest,
                                   projectContractVersion, updatedAt)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(VistrelHandoffAsset, id, kind, relativePath, sha256, bytes, contentType,
                                   source)

} // namespace kinovane
