// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <map>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <tuple>
#include <vector>

#include <libxml/parser.h>
#include <libxml/valid.h>

#include "tools/timeline/read_timeline.hpp"

namespace kinovane::test {

namespace {

[[noreturn]] void fail(const std::string& what) { throw std::runtime_error("FCPXML: " + what); }

const xmlChar* xmlText(const char* text) { return reinterpret_cast<const xmlChar*>(text); }

std::string taken(xmlChar* text) {
    const std::string result = text == nullptr ? "" : reinterpret_cast<const char*>(text);
    xmlFree(text);
    return result;
}

using Node = const xmlNode*;

std::string nameOf(Node node) { return reinterpret_cast<const char*>(node->name); }

std::string attribute(Node node, const char* name) { return taken(xmlGetProp(node, xmlText(name))); }

std::string textOf(Node node) { return taken(xmlNodeGetContent(node)); }

std::vector<Node> children(Node node, std::string_view name = "") {
    std::vector<Node> result;
    for (Node child = node->children; child != nullptr; child = child->next)
        if (child->type == XML_ELEMENT_NODE && (name.empty() || nameOf(child) == name))
            result.push_back(child);
    return result;
}

Node only(Node node, const char* name) {
    const std::vector<Node> found = children(node, name);
    if (found.size() != 1)
        fail("the number of elements " + std::string(name));
    return found.front();
}

class Reader {
  public:
    explicit Reader(const FrameRate& rate) : rate_(rate) {}

    ReadTimeline read(Node root) {
        readResources(only(root, "resources"));
        Node project = only(only(only(root, "library"), "event"), "project");
        Node sequence = only(project, "sequence");
        result_.title = attribute(project, "name");
        result_.length = frames(attribute(sequence, "duration"));
        if (frames(attribute(sequence, "tcStart")) != 0 ||
            attribute(sequence, "tcFormat") != (isDropFrame() ? "DF" : "NDF"))
            fail("the timecode of the sequence");
        for (Node note : children(sequence, "note"))
            readSubtitles(textOf(note));
        std::int64_t position = 0;
        for (Node item : children(only(sequence, "spine"))) {
            readShot(item, position);
            position += result_.shots.back().length;
        }
        std::ranges::sort(result_.sounds, {},
                          [](const ReadSound& sound) { return std::tuple(sound.start, sound.url); });
        return result_;
    }

  private:
    bool isDropFrame() const { return rate_.denominator == 1001 && rate_.numerator % 30'000 == 0; }

    /// A time: "5s" or "1001/24000s".
    std::int64_t frames(const std::string& text) const {
        std::size_t end = 0;
        const std::int64_t numerator = std::stoll(text, &end);
        std::int64_t denominator = 1;
        if (text.at(end) == '/') {
            const std::string rest = text.substr(end + 1);
            denominator = std::stoll(rest, &end);
            end += text.size() - rest.size();
        }
        const std::int64_t product = numerator * rate_.numerator;
        if (text.substr(end) != "s" || product % (denominator * rate_.denominator) != 0)
            fail("the time " + text);
        return product / (denominator * rate_.denominator);
    }

    void readResources(Node resources) {
        if (frames(attribute(only(resources, "format"), "frameDuration")) != 1)
            fail("the duration of a frame");
        for (Node asset : children(resources, "asset"))
            assets_[attribute(asset, "id")] = asset;
    }

    void readSubtitles(const std::string& note) {
        constexpr std::string_view word = "Subtitles: ";
        for (std::size_t begin = 0; begin < note.size();) {
            const std::size_t end = std::min(note.find('\n', begin), note.size());
            result_.subtitles.push_back(note.substr(begin + word.size(), end - begin - word.size()));
            begin = end + 1;
        }
    }

    /// The URL of the file that a clip refers to, which must be as long as the clip.
    std::string urlOf(Node clip, const char* media) const {
        Node asset = assets_.at(attribute(clip, "ref"));
        if (frames(attribute(asset, "duration")) < frames(attribute(clip, "duration")) ||
            attribute(asset, media) != "1")
            fail("the asset of " + attribute(clip, "name"));
        return attribute(only(asset, "media-rep"), "src");
    }

    void readShot(Node item, std::int64_t position) {
        ReadShot shot;
        shot.id = attribute(item, "name");
        shot.start = frames(attribute(item, "offset"));
        shot.length = frames(attribute(item, "duration"));
        if (shot.start != position || frames(attribute(item, "start")) != 0 || shot.length < 1)
            fail("the place of " + shot.id);
        if (nameOf(item) == "asset-clip")
            shot.url = urlOf(item, "hasVideo");
        for (Node marker : children(item, "marker")) {
            const std::int64_t start = frames(attribute(marker, "start"));
            if (start < 0 || start >= shot.length || frames(attribute(marker, "duration")) != 1)
                fail("a marker of " + shot.id);
            shot.markers.push_back({shot.start + start, attribute(marker, "value")});
        }
        for (Node fact : children(only(item, "metadata"), "md"))
            if (attribute(fact, "key") == "kinovane.transition")
                shot.transition = attribute(fact, "value");
        for (Node sound : children(item, "asset-clip")) {
            const std::int64_t start = frames(attribute(sound, "offset"));
            if (start < 0 || start >= shot.length || frames(attribute(sound, "start")) != 0)
                fail("a sound of " + shot.id);
            readSound(sound, shot.start + start);
        }
        result_.shots.push_back(shot);
    }

    /// Clips on one lane must not overlap.
    void readSound(Node sound, std::int64_t start) {
        const std::int64_t length = frames(attribute(sound, "duration"));
        std::int64_t& end = lanes_[std::stoi(attribute(sound, "lane"))];
        if (start < end)
            fail("two sounds at one time on a lane");
        end = start + length;
        result_.sounds.push_back({start, length, urlOf(sound, "hasAudio")});
    }

    FrameRate rate_;
    ReadTimeline result_;
    std::map<std::string, Node> assets_;
    std::map<int, std::int64_t> lanes_; ///< The end of the last sound of each.
};

void collectError(void* errors, const char* format, ...) { // NOLINT(*-vararg)
    *static_cast<std::string*>(errors) += format;
}

} // namespace

ReadTimeline readFCPXML(const std::string& text, const FrameRate& rate) {
    const std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> document(
        xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr,
                      XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING),
        xmlFreeDoc);
    if (!document)
        fail("not well-formed");
    const std::unique_ptr<xmlDtd, decltype(&xmlFreeDtd)> types(xmlParseDTD(nullptr, xmlText(FCPXML_DTD)),
                                                               xmlFreeDtd);
    const std::unique_ptr<xmlValidCtxt, decltype(&xmlFreeValidCtxt)> validation(xmlNewValidCtxt(),
                                                                                xmlFreeValidCtxt);
    std::string errors;
    validation->userData = &errors;
    validation->error = collectError;
    if (!types || xmlValidateDtd(validation.get(), document.get(), types.get()) != 1)
        fail("not valid: " + errors);
    return Reader(rate).read(xmlDocGetRootElement(document.get()));
}

} // namespace kinovane::test
