// SPDX-License-Identifier: Apache-2.0

#include "handoff/exported_kinds.hpp"

#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <kinovane/handoff.hpp>

#include "support/sample_film.hpp"

namespace kinovane::test {
namespace {

const std::vector<std::string>& kinds() {
    static const std::vector<std::string> all{
        "cast-master",      "location-master",      "shot-keyframe",   "shot-clip",
        "dialogue",         "sound-effect",         "score",           "subtitle-srt",
        "subtitle-vtt",     "caption-receipt",      "edit-block",      "edit-block-receipt",
        "rough-cut",        "final-master",         "delivery-master", "poster",
        "thumbnail",        "technical-review",     "creative-review", "media-inspection",
        "inspection-frame", "review-frame",         "dialogue-qc",     "sound-qc",
        "take-selection",   "production-readiness", "review-package",  "human-review",
        "delivery"};
    return all;
}

TEST(ExportedKinds, IncludeAll29Kinds) {
    EXPECT_EQ(std::set<std::string>(kinds().begin(), kinds().end()).size(), 29U);
    WorkspaceMaker maker;
    for (const std::string& kind : kinds())
        maker.add(kind, kind + ".bin", kind);
    const VistrelHandoff handoff = VistrelHandoffBuilder::build(maker.snapshot, "/r");
    std::vector<std::string> exported;
    for (const VistrelHandoffAsset& asset : handoff.assets)
        exported.push_back(asset.kind);
    EXPECT_EQ(exported, kinds());
}

TEST(ExportedKinds, ExcludeEverythingElse) {
    std::vector<std::string> others{"",
                                    "treatment",
                                    "production-plan",
                                    "prompt-log",
                                    "archived-take",
                                    "run",
                                    "shot",
                                    "clip",
                                    "frame",
                                    "score ",
                                    " score",
                                    "scores",
                                    "Delivery",
                                    "delivery_master",
                                    "sound effect"};
    others.emplace_back("score\0", 6);
    for (const std::string& kind : kinds()) {
        std::string capital = kind;
        capital[0] = static_cast<char>(capital[0] - 'a' + 'A');
        others.push_back(capital);
        others.push_back(kind + "-");
        others.push_back(kind.substr(0, kind.size() - 1));
    }
    WorkspaceMaker maker;
    for (const std::string& kind : others) {
        EXPECT_FALSE(isExportedKind(kind)) << kind;
        maker.list(kind, "/unsafe and missing");
    }
    EXPECT_TRUE(VistrelHandoffBuilder::build(maker.snapshot, "/r").assets.empty());
}

} // namespace
} // namespace kinovane::test
