// SPDX-License-Identifier: Apache-2.0

#include <kinovane/workspace.hpp>

#include "workspace/workspace_records.hpp"

namespace kinovane::test {

namespace {

FilmTarget fullTarget() {
    return {"aspectRatio", "audience", 90.5, 24, 270, "language", "platform", "rating", "usage", 480};
}

FilmCastMember fullCastMember() { return {"id", "name", "visual", "wardrobe", "voice", -6}; }

FilmLocation fullLocation() { return {"id", "name", "visual", "ambience", 5}; }

FilmDialogueLine fullDialogueLine() { return {"speaker", "text", 0.25, "delivery"}; }

FilmSoundEffect fullSoundEffect() { return {"prompt", 0.5, 1.75, -18.25, 5}; }

FilmProductionShot fullProductionShot() {
    return {"id",
            "purpose",
            "framePrompt",
            "prompt",
            2.5,
            6,
            {"c1", "c2"},
            "location",
            {fullDialogueLine()},
            {fullSoundEffect()},
            "transition",
            "status",
            13,
            14,
            15};
}

FilmProductionPlan fullProductionPlan() {
    return {"contractVersion",
            "projectId",
            "title",
            "createdAt",
            fullTarget(),
            "scorePrompt",
            {fullCastMember()},
            {fullLocation()},
            {fullProductionShot()},
            18};
}

FilmTreatment fullTreatment() {
    return {"title", "logline", "synopsis", "theme", {"one", "two"}, "visualLanguage", "soundLanguage"};
}

} // namespace

std::vector<RecordRow> planRecords() {
    const auto target =
        recordRow("FilmTarget",
                  {optional(text("aspectRatio")), optional(text("audience")),
                   optional(real("durationSeconds", "90.5")), optional(integer("fps", "24")),
                   optional(integer("height", "270")), optional(text("language")), optional(text("platform")),
                   optional(text("rating")), optional(text("usage")), optional(integer("width", "480"))},
                  fullTarget());
    const auto castMember = recordRow("FilmCastMember",
                                      {text("id"), text("name"), text("visual"), text("wardrobe"),
                                       text("voice"), optional(integer("seed", "-6"))},
                                      fullCastMember());
    const auto location = recordRow(
        "FilmLocation",
        {text("id"), text("name"), text("visual"), text("ambience"), optional(integer("seed", "5"))},
        fullLocation());
    const auto line = recordRow(
        "FilmDialogueLine", {text("speaker"), text("text"), real("startSeconds", "0.25"), text("delivery")},
        fullDialogueLine());
    const auto effect =
        recordRow("FilmSoundEffect",
                  {text("prompt"), real("startSeconds", "0.5"), real("durationSeconds", "1.75"),
                   real("levelDb", "-18.25"), integer("seed", "5")},
                  fullSoundEffect());
    const auto shot = recordRow(
        "FilmProductionShot",
        {text("id"), text("purpose"), text("framePrompt"), text("prompt"), real("durationSeconds", "2.5"),
         integer("seed", "6"), list("characters", R"(["c1","c2"])"), text("location"),
         list("dialogue", line.fullList()), list("soundEffects", effect.fullList()), text("transition"),
         text("status"), integer("take", "13"), optional(integer("selectedCandidate", "14")),
         optional(integer("selectedSeed", "15"))},
        fullProductionShot());
    const auto plan = recordRow("FilmProductionPlan",
                                {text("contractVersion"), text("projectId"), text("title"), text("createdAt"),
                                 object("target", target.fullDocument()), text("scorePrompt"),
                                 list("cast", castMember.fullList()), list("locations", location.fullList()),
                                 list("shots", shot.fullList()), real("plannedDurationSeconds", "18")},
                                fullProductionPlan());
    const auto treatment =
        recordRow("FilmTreatment",
                  {text("title"), text("logline"), text("synopsis"), text("theme"),
                   list("beats", R"(["one","two"])"), text("visualLanguage"), text("soundLanguage")},
                  fullTreatment());
    return {target, castMember, location, line, effect, shot, plan, treatment};
}

} // namespace kinovane::test
