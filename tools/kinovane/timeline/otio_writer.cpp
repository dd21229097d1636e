// SPDX-License-Identifier: Apache-2.0

#include "timeline/otio_writer.hpp"

#include <string_view>
#include <utility>

#include <boost/json.hpp>

#include <kinovane/json.hpp>

#include "json/json_output.hpp"

namespace kinovane::tool {

namespace json = boost::json;

namespace {

constexpr const char* mediaKey = "DEFAULT_MEDIA"; // The key that the format has for the only media of a clip.

json::object metadata(json::object facts) { return {{"kinovane", std::move(facts)}}; }

json::array texts(const std::vector<std::string>& values) {
    return json::array(values.begin(), values.end());
}

json::object mediaFacts(const EditMedia& media) {
    return {{"path", media.path},
            {"kind", media.kind},
            {"contentType", media.contentType},
            {"url", media.url.empty() ? json::value() : json::value(media.url)}};
}

json::value mediaValue(const std::optional<EditMedia>& media) {
    return media ? json::value(mediaFacts(*media)) : json::value(nullptr);
}

/// Writes the objects of the format that depend on the frame rate.
class OTIOWriter {
  public:
    explicit OTIOWriter(const Edit& edit)
        : edit_(edit),
          rate_(static_cast<double>(edit.rate.numerator) / static_cast<double>(edit.rate.denominator)) {}

    json::object timeline() const {
        json::array tracks{videoTrack()};
        for (const EditTrack& track : edit_.tracks)
            tracks.push_back(audioTrack(track));
        json::array subtitles;
        for (const EditMedia& media : edit_.subtitles)
            subtitles.push_back(mediaFacts(media));
        json::object rate{{"numerator", edit_.rate.numerator}, {"denominator", edit_.rate.denominator}};
        return {{"OTIO_SCHEMA", "Timeline.1"},
                {"metadata", metadata({{"projectId", edit_.projectId},
                                       {"frameRate", std::move(rate)},
                                       {"width", optionalValue(edit_.width)},
                                       {"height", optionalValue(edit_.height)},
                                       {"subtitles", std::move(subtitles)}})},
                {"name", edit_.title},
                {"global_start_time", nullptr},
                {"tracks", composition("Stack.1", "tracks", std::move(tracks))}};
    }

  private:
    json::object time(std::int64_t frames) const {
        return {{"OTIO_SCHEMA", "RationalTime.1"}, {"rate", rate_}, {"value", frames}};
    }

    json::object range(std::int64_t start, std::int64_t length) const {
        return {{"OTIO_SCHEMA", "TimeRange.1"}, {"duration", time(length)}, {"start_time", time(start)}};
    }

    static json::object composition(std::string_view schema, std::string_view name, json::array children) {
        return {{"OTIO_SCHEMA", schema},   {"metadata", json::object()},     {"name", name},
                {"source_range", nullptr}, {"effects", json::array()},       {"markers", json::array()},
                {"enabled", true},         {"children", std::move(children)}};
    }

    static json::object track(std::string_view kind, std::string_view name, json::array children) {
        json::object track = composition("Track.1", name, std::move(children));
        track["kind"] = kind;
        return track;
    }

    static json::object reference(const std::optional<EditMedia>& media) {
        const bool isThere = media && !media->url.empty();
        json::object reference{{"OTIO_SCHEMA", isThere ? "ExternalReference.1" : "MissingReference.1"},
                               {"metadata", media ? metadata(mediaFacts(*media)) : json::object()},
                               {"name", media ? media->name : ""},
                               {"available_range", nullptr},
                               {"available_image_bounds", nullptr}};
        if (isThere)
            reference["target_url"] = media->url;
        return reference;
    }

    json::object item(std::string_view schema, std::string_view name, std::int64_t length,
                      json::object facts) const {
        return {{"OTIO_SCHEMA", schema},
                {"metadata", facts.empty() ? json::object() : metadata(std::move(facts))},
                {"name", name},
                {"source_range", range(0, length)},
                {"effects", json::array()},
                {"markers", json::array()},
                {"enabled", true}};
    }

    json::object clip(std::string_view name, std::int64_t length, const std::optional<EditMedia>& media,
                      json::object facts) const {
        json::object clip = item("Clip.2", name, length, std::move(facts));
        clip["media_references"] = json::object{{mediaKey, reference(media)}};
        clip["active_media_reference_key"] = mediaKey;
        return clip;
    }

    json::object videoTrack() const {
        json::array clips;
        for (const EditShot& shot : edit_.shots) {
            json::object clipOfShot = clip(shot.shot.planned.id, shot.length, shot.clip, shotFacts(shot));
            json::array markers;
            for (const EditMarker& each : shot.markers)
                markers.push_back(marker(each));
            clipOfShot["markers"] = std::move(markers);
            clips.push_back(std::move(clipOfShot));
        }
        return track("Video", "Picture", std::move(clips));
    }

    json::object audioTrack(const EditTrack& sounds) const {
        json::array children;
        std::int64_t end = 0;
        for (const EditSound& sound : sounds.sounds) {
            if (sound.start > end)
                children.push_back(item("Gap.1", "", sound.start - end, {}));
            children.push_back(clip(sound.media.name, sound.length, sound.media, soundFacts(sound)));
            end = sound.end();
        }
        return track("Audio", sounds.name, std::move(children));
    }

    static json::object shotFacts(const EditShot& shot) {
        const FilmProductionShot& planned = shot.shot.planned;
        return {{"shotId", planned.id},
                {"order", shot.shot.order},
                {"purpose", planned.purpose},
                {"take", planned.take},
                {"seed", planned.selectedSeed.value_or(planned.seed)},
                {"transition", planned.transition},
                {"locationId", planned.location},
                {"characterIds", texts(planned.characters)},
                {"startMilliseconds", shot.startMilliseconds},
                {"durationMilliseconds", shot.endMilliseconds - shot.startMilliseconds},
                {"keyframe", mediaValue(shot.keyframe)}};
    }

    static json::object soundFacts(const EditSound& sound) {
        json::object facts{{"startMilliseconds", sound.startMilliseconds}};
        if (!sound.shotId.empty())
            facts["shotId"] = sound.shotId;
        if (sound.line)
            facts["line"] = parsedJSON(encodeJSON(*sound.line));
        if (sound.effect)
            facts["effect"] = parsedJSON(encodeJSON(*sound.effect));
        return facts;
    }

    json::object marker(const EditMarker& marker) const {
        return {{"OTIO_SCHEMA", "Marker.2"},
                {"metadata", metadata({{"startMilliseconds", marker.startMilliseconds},
                                       {"line", parsedJSON(encodeJSON(marker.line))}})},
                {"name", marker.line.speaker},
                {"color", "GREEN"},
                {"comment", marker.line.text},
                {"marked_range", range(marker.start, 0)}};
    }

    const Edit& edit_;
    double rate_;
};

} // namespace

std::string otioDocument(const Edit& edit) { return jsonLine(json::value(OTIOWriter(edit).timeline())); }

} // namespace kinovane::tool
