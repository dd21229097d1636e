// SPDX-License-Identifier: Apache-2.0

#include <kinovane/workspace.hpp>

#include "workspace/record_rows.hpp"

namespace kinovane::test {

namespace detail {

template <>
FilmTarget fullRecord() {
    return {"aspectRatio", "audience", 90.5, 24, 270, "language", "platform", "rating", "usage", 480};
}

template <>
FilmCastMember fullRecord() {
    return {"id", "name", "visual", "wardrobe", "voice", -6};
}

template <>
FilmLocation fullRecord() {
    return {"id", "name", "visual", "ambience", 5};
}

template <>
FilmDialogueLine fullRecord() {
    return {"speaker", "text", 0.25, "delivery"};
}

template <>
FilmSoundEffect fullRecord() {
    return {"prompt", 0.5, 1.75, -18.25, 5};
}

template <>
FilmProductionShot fullRecord() {
    return {"id",
            "purpose",
            "framePrompt",
            "prompt",
            2.5,
            6,
            {"c1", "c2"},
            "location",
            {fullRecord<FilmDialogueLine>()},
            {fullRecord<FilmSoundEffect>()},
            "transition",
            "status",
            13,
            14,
            15};
}

template <>
FilmProductionPlan fullRecord() {
    return {"contractVersion",
            "projectId",
            "title",
            "createdAt",
            fullRecord<FilmTarget>(),
            "scorePrompt",
            {fullRecord<FilmCastMember>()},
            {fullRecord<FilmLocation>()},
            {fullRecord<FilmProductionShot>()},
            18};
}

template <>
FilmTreatment fullRecord() {
    return {"title", "logline", "synopsis", "theme", {"one", "two"}, "visualLanguage", "soundLanguage"};
}

} // namespace detail

std::vector<RecordRow> planRecords() {
    const auto target = recordRow<FilmTarget>(
        "FilmTarget",
        {optional(text("aspectRatio")), optional(text("audience")), optional(real("durationSeconds", "90.5")),
         optional(integer("fps", "24")), optional(integer("height", "270")), optional(text("language")),
         optional(text("platform")), optional(text("rating")), optional(text("usage")),
         optional(integer("width", "480"))});
    const auto castMember = recordRow<FilmCastMember>(
        "FilmCastMember", {text("id"), text("name"), text("visual"), text("wardrobe"), text("voice"),
                           optional(integer("seed", "-6"))});
    const auto location =
        recordRow<FilmLocation>("FilmLocation", {text("id"), text("name"), text("visual"), text("ambience"),
                                                 optional(integer("seed", "5"))});
    const auto line = recordRow<FilmDialogueLine>(
        "FilmDialogueLine", {text("speaker"), text("text"), real("startSeconds", "0.25"), text("delivery")});
    const auto effect = recordRow<FilmSoundEffect>(
        "FilmSoundEffect", {text("prompt"), real("startSeconds", "0.5"), real("durationSeconds", "1.75"),
                            real("levelDb", "-18.25"), integer("seed", "5")});
    const auto one = [](const RecordRow& row) { return "[" + row.fullDocument() + "]"; };
    const auto shot = recordRow<FilmProductionShot>(
        "FilmProductionShot",
        {text("id"), text("purpose"), text("framePrompt"), text("prompt"), real("durationSeconds", "2.5"),
         integer("seed", "6"), list("characters", R"(["c1","c2"])"), text("location"),
         list("dialogue", one(line)), list("soundEffects", one(effect)), text("transition"), text("status"),
         integer("take", "13"), optional(integer("selectedCandidate", "14")),
         optional(integer("selectedSeed", "15"))});
    const auto plan = recordRow<FilmProductionPlan>(
        "FilmProductionPlan",
        {text("contractVersion"), text("projectId"), text("title"), text("createdAt"),
         object("target", target.fullDocument()), text("scorePrompt"), list("cast", one(castMember)),
         list("locations", one(location)), list("shots", one(shot)), real("plannedDurationSeconds", "18")});
    const auto treatment = recordRow<FilmTreatment>(
        "FilmTreatment", {text("title"), text("logline"), text("synopsis"), text("theme"),
                          list("beats", R"(["one","two"])"), text("visualLanguage"), text("soundLanguage")});
    return {target, castMember, location, line, effect, shot, plan, treatment};
}

} // namespace kinovane::test
