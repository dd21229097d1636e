// SPDX-License-Identifier: Apache-2.0

#include "artifact_list.hpp"

#include <array>
#include <cstdint>
#include <utility>

#include "common/digest.hpp"

namespace film {

std::string contentTypeOf(std::string_view path) {
    using Pair = std::pair<std::string_view, std::string_view>;
    static constexpr std::array<Pair, 7> types{{{".png", "image/png"},
                                                {".mp4", "video/mp4"},
                                                {".wav", "audio/wav"},
                                                {".srt", "application/x-subrip"},
                                                {".vtt", "text/vtt"},
                                                {".html", "text/html"},
                                                {".json", "application/json"}}};
    for (const auto& [ending, type] : types)
        if (path.ends_with(ending))
            return std::string(type);
    return "application/octet-stream";
}

std::string digestText(std::string_view bytes) { return "sha256:" + simulator::digestOf(bytes); }

json::object* findArtifact(json::object& project, std::string_view path) {
    for (json::value& value : listOf(project, "artifacts"))
        if (json::object& artifact = asRecord(value); textOf(artifact, "path") == path)
            return &artifact;
    return nullptr;
}

std::string latestPath(const json::object& project, std::string_view kind) {
    std::string path;
    for (const json::value& value : listOf(project, "artifacts"))
        if (const json::object& artifact = asRecord(value); textOf(artifact, "kind") == kind)
            path = textOf(artifact, "path");
    return path;
}

std::size_t countKind(const json::object& project, std::string_view kind) {
    std::size_t count = 0;
    for (const json::value& value : listOf(project, "artifacts"))
        count += textOf(asRecord(value), "kind") == kind ? 1U : 0U;
    return count;
}

void recordArtifact(json::object& project, const MediaFile& file, const std::string& createdAt) {
    forgetArtifact(project, file.path);
    listOf(project, "artifacts")
        .emplace_back(json::object{{"bytes", static_cast<std::int64_t>(file.bytes.size())},
                                   {"contentType", file.contentType},
                                   {"createdAt", createdAt},
                                   {"kind", file.kind},
                                   {"path", file.path},
                                   {"sha256", digestText(file.bytes)},
                                   {"source", file.source}});
}

void forgetArtifact(json::object& project, std::string_view path) {
    json::array& artifacts = listOf(project, "artifacts");
    for (auto place = artifacts.begin(); place != artifacts.end();)
        place = textOf(asRecord(*place), "path") == path ? artifacts.erase(place) : place + 1;
}

} // namespace film
