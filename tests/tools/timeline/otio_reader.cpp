// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <tuple>

#include <boost/json.hpp>

#include "tools/timeline/read_timeline.hpp"

namespace kinovane::test {

namespace json = boost::json;

namespace {

/// The fields of each class, as the description of the format lists them.
const std::map<std::string, std::set<std::string>> fields{
    {"Clip.2",
     {"active_media_reference_key", "effects", "enabled", "markers", "media_references", "metadata", "name",
      "source_range"}},
    {"ExternalReference.1", {"available_image_bounds", "available_range", "metadata", "name", "target_url"}},
    {"Gap.1", {"effects", "enabled", "markers", "metadata", "name", "source_range"}},
    {"Marker.2", {"color", "comment", "marked_range", "metadata", "name"}},
    {"MissingReference.1", {"available_image_bounds", "available_range", "metadata", "name"}},
    {"RationalTime.1", {"rate", "value"}},
    {"Stack.1", {"children", "effects", "enabled", "markers", "metadata", "name", "source_range"}},
    {"TimeRange.1", {"duration", "start_time"}},
    {"Timeline.1", {"global_start_time", "metadata", "name", "tracks"}},
    {"Track.1", {"children", "effects", "enabled", "kind", "markers", "metadata", "name", "source_range"}},
};

[[noreturn]] void fail(const std::string& what) { throw std::runtime_error("OTIO: " + what); }

std::string text(const json::value& value) { return std::string(value.as_string()); }

/// The object, which must be of this class and have all of its fields and no others.
const json::object& object(const json::value& value, std::string_view schema) {
    const json::object& found = value.as_object();
    if (text(found.at("OTIO_SCHEMA")) != schema)
        fail("a " + text(found.at("OTIO_SCHEMA")) + " in place of a " + std::string(schema));
    std::set<std::string> names;
    for (const json::key_value_pair& member : found)
        names.insert(std::string(member.key()));
    names.erase("OTIO_SCHEMA");
    if (names != fields.at(std::string(schema)))
        fail("the fields of a " + std::string(schema));
    return found;
}

std::string schemaOf(const json::value& value) { return text(value.at("OTIO_SCHEMA")); }

class Reader {
  public:
    explicit Reader(const FrameRate& rate) : rate_(rate) {}

    ReadTimeline read(const json::value& document) {
        const json::object& timeline = object(document, "Timeline.1");
        ReadTimeline result;
        result.title = text(timeline.at("name"));
        for (const json::value& subtitles : document.at_pointer("/metadata/kinovane/subtitles").as_array())
            result.subtitles.push_back(text(subtitles.at("url")));
        const json::array& tracks = object(timeline.at("tracks"), "Stack.1").at("children").as_array();
        for (std::size_t index = 0; index < tracks.size(); ++index) {
            const json::object& track = object(tracks[index], "Track.1");
            if (text(track.at("kind")) != (index == 0 ? "Video" : "Audio"))
                fail("a track of the kind " + text(track.at("kind")));
            readTrack(track, index == 0, result);
        }
        std::ranges::sort(result.sounds, {},
                          [](const ReadSound& sound) { return std::tuple(sound.start, sound.url); });
        return result;
    }

  private:
    std::int64_t frames(const json::value& value) const {
        const json::object& time = object(value, "RationalTime.1");
        // A quotient may have more digits than a double until it is stored.
        const double rate = static_cast<double>(rate_.numerator) / static_cast<double>(rate_.denominator);
        if (std::abs(time.at("rate").to_number<double>() - rate) > 1e-12)
            fail("the rate of a time");
        return time.at("value").as_int64();
    }

    void readTrack(const json::object& track, bool isVideo, ReadTimeline& result) const {
        std::int64_t position = 0;
        for (const json::value& child : track.at("children").as_array()) {
            const json::object& item = object(child, schemaOf(child));
            const json::object& range = object(item.at("source_range"), "TimeRange.1");
            const std::int64_t length = frames(range.at("duration"));
            if (frames(range.at("start_time")) != 0 || length < 1)
                fail("the range of a clip");
            if (schemaOf(child) == "Clip.2")
                readClip(item, isVideo, {position, length, ""}, result);
            else if (schemaOf(child) != "Gap.1" || isVideo)
                fail("a " + schemaOf(child) + " on a track");
            position += length;
        }
        result.length = std::max(result.length, position);
    }

    void readClip(const json::object& clip, bool isVideo, ReadSound place, ReadTimeline& result) const {
        const json::value& reference =
            clip.at("media_references").at(text(clip.at("active_media_reference_key")));
        const bool isThere = schemaOf(reference) == "ExternalReference.1";
        const json::object& media = object(reference, schemaOf(reference));
        if (!isVideo) {
            place.url = text(media.at("target_url"));
            result.sounds.push_back(place);
            return;
        }
        ReadShot shot{text(clip.at("name")), place.start, place.length, {}, {}, {}};
        if (isThere)
            shot.url = text(media.at("target_url"));
        const json::value& facts = clip.at("metadata").at("kinovane");
        if (text(facts.at("shotId")) != shot.id)
            fail("the metadata of " + shot.id);
        shot.transition = text(facts.at("transition"));
        for (const json::value& each : clip.at("markers").as_array()) {
            const json::object& marker = object(each, "Marker.2");
            const std::int64_t start =
                frames(object(marker.at("marked_range"), "TimeRange.1").at("start_time"));
            if (start < 0 || start >= shot.length)
                fail("a marker outside its clip");
            shot.markers.push_back(
                {shot.start + start, text(marker.at("name")) + ": " + text(marker.at("comment"))});
        }
        result.shots.push_back(shot);
    }

    FrameRate rate_;
};

} // namespace

ReadTimeline readOTIO(const std::string& document, const FrameRate& rate) {
    return Reader(rate).read(json::parse(document));
}

} // namespace kinovane::test
