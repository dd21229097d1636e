// SPDX-License-Identifier: Apache-2.0

#include "timeline/fcpxml_writer.hpp"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

#include "timeline/fcpxml_assets.hpp"
#include "timeline/xml_writer.hpp"

namespace kinovane::tool {

namespace {

constexpr const char* format = "format1";

const char* roleOf(SoundRole role) {
    switch (role) {
    case SoundRole::dialogue:
        return "dialogue";
    case SoundRole::effects:
        return "effects";
    case SoundRole::score:
        return "music";
    }
    return "";
}

class FCPXMLWriter {
  public:
    explicit FCPXMLWriter(const Edit& edit)
        : edit_(edit), assets_(edit), xml_("fcpxml", {{"version", "1.9"}}) {}

    std::string document() {
        writeResources();
        xml_.begin("library");
        xml_.begin("event", {{"name", edit_.title}});
        xml_.begin("project", {{"name", edit_.title}});
        xml_.begin("sequence", {{"format", format},
                                {"duration", time(edit_.length)},
                                {"tcStart", "0s"},
                                {"tcFormat", edit_.rate.isDropFrame() ? "DF" : "NDF"}});
        if (const std::string note = subtitlesText(); !note.empty())
            xml_.text("note", note);
        xml_.begin("spine");
        for (const EditShot& shot : edit_.shots)
            writeShot(shot);
        return xml_.document();
    }

  private:
    std::string time(std::int64_t frames) const { return fcpxmlTime(frames, edit_.rate); }

    void writeResources() {
        XMLWriter::Attributes attributes{{"id", format}, {"frameDuration", time(1)}};
        const std::int64_t width = edit_.width.value_or(0);
        const std::int64_t height = edit_.height.value_or(0);
        if (width > 0 && height > 0) {
            attributes.emplace_back("width", std::to_string(width));
            attributes.emplace_back("height", std::to_string(height));
        }
        xml_.begin("resources");
        xml_.empty("format", attributes);
        assets_.write(xml_, format);
        xml_.end();
    }

    std::string subtitlesText() const {
        std::string text;
        for (const EditMedia& subtitles : edit_.subtitles)
            text += (text.empty() ? "" : "\n") +
                    ("Subtitles: " + (subtitles.url.empty() ? subtitles.path + " (missing)" : subtitles.url));
        return text;
    }

    void writeShot(const EditShot& shot) {
        const EditMedia* clip = shot.presentClip();
        XMLWriter::Attributes attributes;
        if (clip != nullptr)
            attributes.emplace_back("ref", assets_.idOf(*clip));
        attributes.insert(attributes.end(), {{"name", shot.shot.planned.id},
                                             {"offset", time(shot.start)},
                                             {"start", "0s"},
                                             {"duration", time(shot.length)}});
        if (clip != nullptr)
            attributes.emplace_back("format", format);
        xml_.begin(clip != nullptr ? "asset-clip" : "gap", attributes);
        if (const std::string note = noteOf(shot.shot.planned); !note.empty())
            xml_.text("note", note);
        writeSounds(shot);
        for (const EditMarker& marker : shot.markers)
            xml_.empty("marker", {{"start", time(marker.start)},
                                  {"duration", time(1)},
                                  {"value", marker.line.speaker + ": " + marker.line.text}});
        writeMetadata(shot);
        xml_.end();
    }

    static std::string noteOf(const FilmProductionShot& shot) {
        std::string note = shot.purpose;
        if (!shot.transition.empty())
            note += (note.empty() ? "" : "\n") + ("Transition: " + shot.transition);
        return note;
    }

    /// The sounds that begin during the shot. Their offsets are in the time of the shot, which begins with 0.
    void writeSounds(const EditShot& shot) {
        for (std::size_t track = 0; track < edit_.tracks.size(); ++track)
            for (const EditSound& sound : edit_.tracks[track].sounds)
                if (sound.start >= shot.start && sound.start < shot.start + shot.length)
                    xml_.empty("asset-clip", {{"ref", assets_.idOf(sound.media)},
                                              {"lane", "-" + std::to_string(track + 1)},
                                              {"name", sound.media.name},
                                              {"offset", time(sound.start - shot.start)},
                                              {"start", "0s"},
                                              {"duration", time(sound.length)},
                                              {"audioRole", roleOf(edit_.tracks[track].role)}});
    }

    void writeMetadata(const EditShot& shot) {
        const FilmProductionShot& planned = shot.shot.planned;
        const std::pair<const char*, std::string> facts[]{
            // NOLINT(*-c-arrays)
            {"kinovane.shotId", planned.id},
            {"kinovane.order", std::to_string(shot.shot.order)},
            {"kinovane.take", std::to_string(planned.take)},
            {"kinovane.seed", std::to_string(planned.selectedSeed.value_or(planned.seed))},
            {"kinovane.transition", planned.transition},
            {"kinovane.startMilliseconds", std::to_string(shot.startMilliseconds)},
            {"kinovane.durationMilliseconds", std::to_string(shot.endMilliseconds - shot.startMilliseconds)},
        };
        xml_.begin("metadata");
        for (const auto& [key, value] : facts)
            xml_.empty("md", {{"key", key}, {"value", value}});
        xml_.end();
    }

    const Edit& edit_;
    FCPXMLAssets assets_;
    XMLWriter xml_;
};

} // namespace

std::string fcpxmlDocument(const Edit& edit) { return FCPXMLWriter(edit).document(); }

} // namespace kinovane::tool
