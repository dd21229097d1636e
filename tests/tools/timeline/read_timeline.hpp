// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "timeline/frame_rate.hpp"

namespace kinovane::test {

using tool::FrameRate;

/// A line that a timeline marks on a shot.
struct ReadMarker {
    std::int64_t start = 0; ///< In frames from the start of the film.
    std::string text;       ///< "SPEAKER: TEXT".

    bool operator==(const ReadMarker&) const = default;
};

struct ReadShot {
    std::string id;
    std::int64_t start = 0; ///< In frames from the start of the film.
    std::int64_t length = 0;
    std::optional<std::string> url; ///< Of the clip.
    std::string transition;
    std::vector<ReadMarker> markers;
};

struct ReadSound {
    std::int64_t start = 0; ///< In frames from the start of the film.
    std::int64_t length = 0;
    std::string url;

    bool operator==(const ReadSound&) const = default;
};

/// What a timeline of any format says.
struct ReadTimeline {
    std::string title;
    std::int64_t length = 0; ///< In frames.
    std::vector<ReadShot> shots;
    std::vector<ReadSound> sounds; ///< By start, then by URL.
    std::vector<std::string> subtitles;
};

// The readers are made from the public descriptions of the formats. Each throws std::runtime_error for a
// document that is not of its format, and for a time that is no whole number of frames at this rate.

ReadTimeline readOTIO(const std::string& document, const FrameRate& rate);
ReadTimeline readEDL(const std::string& document, const FrameRate& rate);

/// The document must also be valid as `fcpxml.dtd` describes.
ReadTimeline readFCPXML(const std::string& document, const FrameRate& rate);

/// By the name of the format.
ReadTimeline readTimeline(const std::string& format, const std::string& document, const FrameRate& rate);

/// The file that a URL leads to from a document in this folder.
std::filesystem::path fileOf(const std::string& url, const std::filesystem::path& folder);

} // namespace kinovane::test
