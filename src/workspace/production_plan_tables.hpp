// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <kinovane/production_plan.hpp>

#include "common/json/table.hpp"

/// The JSON keys of production-plan.json. FilmCastMember, FilmLocation, FilmDialogueLine and FilmSoundEffect
/// also appear in the handoff document.
namespace kinovane::json {

template <>
struct Table<FilmTarget> {
    static constexpr std::tuple fields{
        field("aspectRatio", &FilmTarget::aspectRatio),
        field("audience", &FilmTarget::audience),
        field("durationSeconds", &FilmTarget::durationSeconds),
        field("fps", &FilmTarget::fps),
        field("height", &FilmTarget::height),
        field("language", &FilmTarget::language),
        field("platform", &FilmTarget::platform),
        field("rating", &FilmTarget::rating),
        field("usage", &FilmTarget::usage),
        field("width", &FilmTarget::width),
    };
};

template <>
struct Table<FilmCastMember> {
    static constexpr std::tuple fields{
        field("id", &FilmCastMember::id),         field("name", &FilmCastMember::name),
        field("visual", &FilmCastMember::visual), field("wardrobe", &FilmCastMember::wardrobe),
        field("voice", &FilmCastMember::voice),   field("seed", &FilmCastMember::seed),
    };
};

template <>
struct Table<FilmLocation> {
    static constexpr std::tuple fields{
        field("id", &FilmLocation::id),         field("name", &FilmLocation::name),
        field("visual", &FilmLocation::visual), field("ambience", &FilmLocation::ambience),
        field("seed", &FilmLocation::seed),
    };
};

template <>
struct Table<FilmDialogueLine> {
    static constexpr std::tuple fields{
        field("speaker", &FilmDialogueLine::speaker),
        field("text", &FilmDialogueLine::text),
        field("startSeconds", &FilmDialogueLine::startSeconds),
        field("delivery", &FilmDialogueLine::delivery),
    };
};

template <>
struct Table<FilmSoundEffect> {
    static constexpr std::tuple fields{
        field("prompt", &FilmSoundEffect::prompt),
        field("startSeconds", &FilmSoundEffect::startSeconds),
        field("durationSeconds", &FilmSoundEffect::durationSeconds),
        field("levelDb", &FilmSoundEffect::levelDb),
        field("seed", &FilmSoundEffect::seed),
    };
};

template <>
struct Table<FilmProductionShot> {
    static constexpr std::tuple fields{
        field("id", &FilmProductionShot::id),
        field("purpose", &FilmProductionShot::purpose),
        field("framePrompt", &FilmProductionShot::framePrompt),
        field("prompt", &FilmProductionShot::prompt),
        field("durationSeconds", &FilmProductionShot::durationSeconds),
        field("seed", &FilmProductionShot::seed),
        field("characters", &FilmProductionShot::characters),
        field("location", &FilmProductionShot::location),
        field("dialogue", &FilmProductionShot::dialogue),
        field("soundEffects", &FilmProductionShot::soundEffects),
        field("transition", &FilmProductionShot::transition),
        field("status", &FilmProductionShot::status),
        field("take", &FilmProductionShot::take),
        field("selectedCandidate", &FilmProductionShot::selectedCandidate),
        field("selectedSeed", &FilmProductionShot::selectedSeed),
    };
};

template <>
struct Table<FilmProductionPlan> {
    static constexpr std::tuple fields{
        field("contractVersion", &FilmProductionPlan::contractVersion),
        field("projectId", &FilmProductionPlan::projectId),
        field("title", &FilmProductionPlan::title),
        field("createdAt", &FilmProductionPlan::createdAt),
        field("target", &FilmProductionPlan::target),
        field("scorePrompt", &FilmProductionPlan::scorePrompt),
        field("cast", &FilmProductionPlan::cast),
        field("locations", &FilmProductionPlan::locations),
        field("shots", &FilmProductionPlan::shots),
        field("plannedDurationSeconds", &FilmProductionPlan::plannedDurationSeconds),
    };
};

} // namespace kinovane::json
