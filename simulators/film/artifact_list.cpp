// SPDX-License-Identifier: Apache-2.0

#include "artifact_list.hpp"

#include <filesystem>
#include <map>

#include "common/digest.hpp"

namespace simulator::film {
namespace {

const char* contentTypeOf(const std::string& path) {
    static const std::map<std::string, const char*> types{
        {".png", "image/png"},        {".mp4", "video/mp4"},
        {".wav", "audio/wav"},        {".srt", "application/x-subrip"},
        {".vtt", "text/vtt"},         {".html", "text/html"},
        {".json", "application/json"}};
    const auto found = types.find(std::filesystem::path(path).extension().native());
    return found != types.end() ? found->second : "application/octet-stream";
}

} // namespace

json::object* findArtifact(json::object& project, std::string_view path) {
    return findRecord(listOf(project, "artifacts"), "path", path);
}

std::string latestPath(const json::object& project, std::string_view kind) {
    std::string path;
    for (const json::value& artifact : listOf(project, "artifacts"))
        if (textOf(asRecord(artifact), "kind") == kind)
            path = textOf(asRecord(artifact), "path");
    return path;
}

std::int64_t countKind(const json::object& project, std::string_view kind) {
    std::int64_t count = 0;
    for (const json::value& artifact : listOf(project, "artifacts"))
        count += textOf(asRecord(artifact), "kind") == kind ? 1 : 0;
    return count;
}

void recordArtifact(json::object& project, std::string_view kind, const std::string& path,
                    std::string_view source, std::string_view bytes, const std::string& createdAt) {
    removeRecords(listOf(project, "artifacts"), "path", path);
    listOf(project, "artifacts")
        .emplace_back(json::object{{"bytes", bytes.size()},
                                   {"contentType", contentTypeOf(path)},
                                   {"createdAt", createdAt},
                                   {"kind", kind},
                                   {"path", path},
                                   {"sha256", "sha256:" + digestOf(bytes)},
                                   {"source", source}});
}

} // namespace simulator::film
