// SPDX-License-Identifier: Apache-2.0

#include "commands/manifest_changes.hpp"

#include <map>
#include <string_view>
#include <system_error>
#include <utility>

#include <boost/json/array.hpp>

#include "film/file_content.hpp"
#include "film/handoff_file.hpp"
#include "terminal/human_text.hpp"
#include "terminal/shown_text.hpp"

namespace kinovane::tool {

namespace fs = std::filesystem;
namespace json = boost::json;

namespace {

/// Compares two lists. Records with the same key are compared in the order in which they occur.
template <class Record>
RecordChanges compare(const std::vector<Record>& before, const std::vector<Record>& after,
                      std::string Record::* key) {
    using Identity = std::pair<std::string_view, std::size_t>; // The key, and which of the records with it.
    const auto index = [key](const std::vector<Record>& records) {
        std::map<Identity, const Record*> found;
        std::map<std::string_view, std::size_t> uses; // NOLINT(misc-const-correctness): it is counted in
        for (const Record& record : records)
            found.emplace(Identity(record.*key, uses[record.*key]++), &record);
        return found;
    };
    const std::map<Identity, const Record*> old = index(before);
    const std::map<Identity, const Record*> present = index(after);

    RecordChanges changes;
    std::map<std::string_view, std::size_t> uses;
    for (const Record& record : after) {
        const auto found = old.find(Identity(record.*key, uses[record.*key]++));
        if (found == old.end())
            changes.added.push_back(record.*key);
        else if (*found->second != record)
            changes.changed.push_back(record.*key);
    }
    uses.clear();
    for (const Record& record : before)
        if (!present.contains(Identity(record.*key, uses[record.*key]++)))
            changes.removed.push_back(record.*key);
    return changes;
}

/// "2 files changed, 1 added, 3 removed".
std::string countsText(const RecordChanges& changes, const char* one, const char* many) {
    std::string text;
    const auto append = [&](std::size_t count, const char* what) {
        if (count == 0)
            return;
        text += text.empty() ? countText(count, one, many) : ", " + std::to_string(count);
        text += what;
    };
    append(changes.changed.size(), " changed");
    append(changes.added.size(), " added");
    append(changes.removed.size(), " removed");
    return text;
}

template <class Show>
void appendLines(std::vector<std::string>& lines, const RecordChanges& changes, Show show) {
    for (const std::string& key : changes.changed)
        lines.push_back("changed  " + show(key));
    for (const std::string& key : changes.added)
        lines.push_back("added    " + show(key));
    for (const std::string& key : changes.removed)
        lines.push_back("removed  " + show(key));
}

json::object recordsJSON(const RecordChanges& changes) {
    const auto list = [](const std::vector<std::string>& keys) {
        return json::array(keys.begin(), keys.end());
    };
    return {{"changed", list(changes.changed)},
            {"added", list(changes.added)},
            {"removed", list(changes.removed)}};
}

} // namespace

std::optional<VistrelHandoff> readManifest(const fs::path& file) {
    std::error_code error;
    if (!fs::is_regular_file(file, error))
        return std::nullopt;
    const std::string text = contentOf(file, error, largestManifest);
    if (error)
        return std::nullopt;
    try {
        return decodeJSON<VistrelHandoff>(text);
    } catch (const JSONDecodingError&) {
        return std::nullopt;
    }
}

ManifestChanges changesBetween(const VistrelHandoff& before, const VistrelHandoff& after) {
    return {before.exportedAt, compare(before.assets, after.assets, &VistrelHandoffAsset::relativePath),
            compare(before.shots, after.shots, &VistrelHandoffShot::id)};
}

std::string summaryText(const ManifestChanges& changes) {
    if (changes.files.empty() && changes.shots.empty())
        return "no file and no shot changed";
    const std::string files = countsText(changes.files, "file", "files");
    const std::string shots = countsText(changes.shots, "shot", "shots");
    return files + (files.empty() || shots.empty() ? "" : "; ") + shots;
}

std::vector<std::string> listLines(const ManifestChanges& changes) {
    std::vector<std::string> lines;
    appendLines(lines, changes.files, [](const std::string& path) { return shownPath(path); });
    appendLines(lines, changes.shots, [](const std::string& id) { return "shot " + shown(id); });
    return lines;
}

json::object changesJSON(const ManifestChanges& changes) {
    return {{"since", changes.since},
            {"files", recordsJSON(changes.files)},
            {"shots", recordsJSON(changes.shots)}};
}

} // namespace kinovane::tool
