// SPDX-License-Identifier: Apache-2.0

#include "manifest.hpp"

#include <algorithm>

#include "common/file.hpp"
#include "common/json_text.hpp"
#include "common/refusal.hpp"
#include "record_reader.hpp"

namespace vistrel {
namespace {

using simulator::jsonQuoted;
using simulator::readWholeFile;
using simulator::Refusal;

namespace json = boost::json;

constexpr std::string_view knownContract = "quexrun/film-vistrel-handoff.v1";
constexpr std::uint64_t sizeLimit = std::uint64_t{256} << 20U;

json::value parseJson(std::string_view text) {
    json::parse_options options;
    options.max_depth = 64;
    json::parser parser({}, options);
    boost::system::error_code error;
    const std::size_t parsed = parser.write(text.data(), text.size(), error);
    if (!error)
        return parser.release();
    const std::string_view before = text.substr(0, parsed);
    const auto line = std::ranges::count(before, '\n') + 1;
    throw Refusal("the manifest is not valid JSON: " + error.message() + " in line " + std::to_string(line));
}

// A braced list is evaluated from left to right, so the first faulty field in the order below is the one
// named.

Source readSource(const RecordReader& reader) {
    return {reader.text("projectId"), reader.text("projectRoot"), reader.text("runManifest"),
            reader.text("projectContractVersion"), reader.text("updatedAt")};
}

Header readHeader(const RecordReader& reader) {
    return {reader.text("title"),
            reader.text("idea"),
            reader.optionalText("logline"),
            reader.optionalText("synopsis"),
            reader.optionalText("theme"),
            reader.integer("durationMilliseconds"),
            reader.integer("fps"),
            reader.text("aspectRatio"),
            reader.optionalInteger("width"),
            reader.optionalInteger("height")};
}

CastMember readCastMember(const RecordReader& reader) {
    return {reader.text("id"),       reader.text("name"),  reader.text("visual"),
            reader.text("wardrobe"), reader.text("voice"), reader.optionalInteger("seed")};
}

Location readLocation(const RecordReader& reader) {
    return {reader.text("id"), reader.text("name"), reader.text("visual"), reader.text("ambience"),
            reader.optionalInteger("seed")};
}

DialogueLine readDialogueLine(const RecordReader& reader) {
    return {reader.text("speaker"), reader.text("text"), reader.number("startSeconds"),
            reader.text("delivery")};
}

SoundEffect readSoundEffect(const RecordReader& reader) {
    return {reader.text("prompt"), reader.number("startSeconds"), reader.number("durationSeconds"),
            reader.number("levelDb"), reader.integer("seed")};
}

Shot readShot(const RecordReader& reader) {
    return {reader.text("id"),
            reader.integer("order"),
            reader.text("purpose"),
            reader.text("prompt"),
            reader.text("framePrompt"),
            reader.integer("timelineStartMilliseconds"),
            reader.integer("durationMilliseconds"),
            reader.texts("characterIds"),
            reader.text("locationId"),
            reader.text("transition"),
            reader.integer("take"),
            reader.integer("seed"),
            reader.optionalText("keyframeAssetId"),
            reader.optionalText("clipAssetId"),
            reader.records("dialogue", readDialogueLine),
            reader.records("soundEffects", readSoundEffect)};
}

Asset readAsset(const RecordReader& reader) {
    return {reader.text("id"),     reader.text("kind"),     reader.text("relativePath"),
            reader.text("sha256"), reader.integer("bytes"), reader.text("contentType"),
            reader.text("source")};
}

Proof readProof(const RecordReader& reader) {
    return {reader.flag("creation"),   reader.flag("clips"),  reader.flag("assembly"),
            reader.flag("dialogue"),   reader.flag("sound"),  reader.flag("captions"),
            reader.flag("inspection"), reader.flag("review"), reader.flag("humanReview"),
            reader.flag("delivery")};
}

/// Another version may have other keys, so it is named before any of them is missed.
std::string readContractVersion(const RecordReader& reader) {
    std::string version = reader.text("contractVersion");
    if (version != knownContract) {
        throw Refusal("contractVersion: " + jsonQuoted(version) + " is not " + jsonQuoted(knownContract) +
                      ", the only version that can be imported");
    }
    return version;
}

} // namespace

std::string readManifestFile(const std::filesystem::path& file) {
    return readWholeFile(file, sizeLimit, "a manifest");
}

Manifest parseManifest(std::string_view text) {
    const json::value document = parseJson(text);
    const RecordReader reader(document, "");
    return {readContractVersion(reader),
            reader.text("exportedAt"),
            readSource(reader.record("source")),
            readHeader(reader.record("project")),
            reader.records("cast", readCastMember),
            reader.records("locations", readLocation),
            reader.records("shots", readShot),
            reader.records("assets", readAsset),
            readProof(reader.record("proof"))};
}

} // namespace vistrel
