// SPDX-License-Identifier: Apache-2.0

#include "manifest.hpp"

#include <algorithm>
#include <array>

#include "common/file.hpp"
#include "common/handoff.hpp"
#include "common/refusal.hpp"
#include "schema.hpp"

namespace simulator::vistrel {
namespace {

constexpr std::uint64_t sizeLimit = std::uint64_t{256} << 20U;

constexpr std::array source{text("projectId"), text("projectRoot"), text("runManifest"),
                            text("projectContractVersion"), text("updatedAt")};

constexpr std::array project{text("title"),
                             text("idea"),
                             optional(text("logline")),
                             optional(text("synopsis")),
                             optional(text("theme")),
                             integer("durationMilliseconds"),
                             integer("fps"),
                             text("aspectRatio"),
                             optional(integer("width")),
                             optional(integer("height"))};

constexpr std::array castMember{text("id"),       text("name"),  text("visual"),
                                text("wardrobe"), text("voice"), optional(integer("seed"))};

constexpr std::array location{text("id"), text("name"), text("visual"), text("ambience"),
                              optional(integer("seed"))};

constexpr std::array dialogueLine{text("speaker"), text("text"), number("startSeconds"), text("delivery")};

constexpr std::array soundEffect{text("prompt"), number("startSeconds"), number("durationSeconds"),
                                 number("levelDb"), integer("seed")};

constexpr std::array shot{text("id"),
                          integer("order"),
                          text("purpose"),
                          text("prompt"),
                          text("framePrompt"),
                          integer("timelineStartMilliseconds"),
                          integer("durationMilliseconds"),
                          texts("characterIds"),
                          text("locationId"),
                          text("transition"),
                          integer("take"),
                          integer("seed"),
                          optional(text("keyframeAssetId")),
                          optional(text("clipAssetId")),
                          records("dialogue", dialogueLine),
                          records("soundEffects", soundEffect)};

constexpr std::array asset{text("id"),       text("kind"),        text("relativePath"), text("sha256"),
                           integer("bytes"), text("contentType"), text("source")};

constexpr std::array proof{flag("creation"),    flag("clips"),    flag("assembly"),   flag("dialogue"),
                           flag("sound"),       flag("captions"), flag("inspection"), flag("review"),
                           flag("humanReview"), flag("delivery")};

constexpr std::array manifest{
    text("exportedAt"),          record("source", source),       record("project", project),
    records("cast", castMember), records("locations", location), records("shots", shot),
    records("assets", asset),    record("proof", proof)};

constexpr std::array versionOnly{text("contractVersion")};

json::value parseJson(std::string_view text) {
    json::parse_options options;
    options.max_depth = 64;
    json::parser parser({}, options);
    boost::system::error_code error;
    const std::size_t parsed = parser.write(text.data(), text.size(), error);
    if (!error)
        return parser.release();
    const auto line = std::ranges::count(text.substr(0, parsed), '\n') + 1;
    throw Refusal("the manifest is not valid JSON: " + error.message() + " in line " + std::to_string(line));
}

} // namespace

std::string readManifestFile(const std::filesystem::path& file) {
    return readWholeFile(file, sizeLimit, "a manifest");
}

json::object parseManifest(std::string_view text) {
    json::value document = parseJson(text);
    // Another version may have other keys, so the version is checked before the keys are.
    expectFields(document, versionOnly);
    if (const std::string version = textOf(document.get_object(), "contractVersion");
        version != handoffContract) {
        throw Refusal("contractVersion: " + jsonQuoted(version) + " is not " + jsonQuoted(handoffContract) +
                      ", the only version that can be imported");
    }
    expectFields(document, manifest);
    removeNulls(document);
    return std::move(document.get_object());
}

} // namespace simulator::vistrel
