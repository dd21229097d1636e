// SPDX-License-Identifier: Apache-2.0

#include "documents.hpp"

#include <cmath>
#include <map>

#include "common/digest.hpp"
#include "common/embedded_file.hpp"
#include "common/file.hpp"
#include "common/refusal.hpp"

namespace simulator::film {
namespace {

constexpr std::uint64_t sizeLimit = std::uint64_t{64} << 20U;

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

json::object readDocument(const std::filesystem::path& file) {
    const std::string text = readWholeFile(file, sizeLimit, "a film document");
    boost::system::error_code error;
    json::value value = json::parse(text, error);
    if (error)
        throw Refusal(jsonQuoted(file.native()) + " is not valid JSON: " + error.message());
    if (!value.is_object())
        throw Refusal(jsonQuoted(file.native()) + " does not hold a JSON object");
    removeNulls(value);
    return std::move(value.get_object());
}

json::object documentTemplate(std::string_view name) { return json::parse(embeddedFile(name)).as_object(); }

std::int64_t millisecondsOf(const json::object& record, std::string_view key) {
    const double milliseconds = numberOf(record, key) * 1000;
    // The limit is far beyond any film; it keeps the conversion and later sums within range.
    if (milliseconds < 0 || milliseconds > 1e9)
        throw Refusal("the film's documents are damaged: " + jsonQuoted(key) + " is not a reasonable time");
    return std::llround(milliseconds);
}

json::object* findRecord(json::array& records, std::string_view key, std::string_view text) {
    for (json::value& value : records)
        if (json::object& record = asRecord(value); textOf(record, key) == text)
            return &record;
    return nullptr;
}

void removeRecords(json::array& records, std::string_view key, std::string_view text) {
    for (auto record = records.begin(); record != records.end();)
        record = textOf(asRecord(*record), key) == text ? records.erase(record) : record + 1;
}

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
