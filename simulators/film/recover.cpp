// SPDX-License-Identifier: Apache-2.0

#include <cstdint>
#include <optional>
#include <set>
#include <vector>

#include "changes.hpp"
#include "common/refusal.hpp"
#include "shots.hpp"

namespace simulator::film {
namespace {

constexpr std::uint64_t sizeLimit = std::uint64_t{64} << 20U;

/// The complete lines. A last line without its end was being written when the step was cut off, and what it
/// would have announced was not begun.
std::vector<json::object> entriesOf(const std::filesystem::path& journal) {
    const std::string text = readWholeFile(journal, sizeLimit, "a journal");
    std::vector<json::object> entries;
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = text.find('\n', start);
        if (end == std::string::npos)
            break;
        boost::system::error_code error;
        const json::value entry = json::parse(text.substr(start, end - start), error);
        if (error || !entry.is_object())
            throw Refusal("The journal of this film is damaged, so it cannot be recovered.");
        entries.push_back(entry.get_object());
        start = end + 1;
    }
    return entries;
}

std::set<std::string> knownPaths(const json::object& project) {
    std::set<std::string> paths;
    for (const json::value& artifact : listOf(project, "artifacts"))
        paths.insert(textOf(asRecord(artifact), "path"));
    return paths;
}

/// Deletes documents that were being written; answers how many there were.
std::size_t removeUnfinished(const std::filesystem::path& root) {
    std::vector<std::filesystem::path> unfinished;
    for (const auto& entry : std::filesystem::directory_iterator(root))
        if (entry.path().native().ends_with(temporaryExtension))
            unfinished.push_back(entry.path());
    for (const std::filesystem::path& file : unfinished)
        std::filesystem::remove(file);
    return unfinished.size();
}

void undo(const Workspace& workspace, const json::object& entry, const std::set<std::string>& known) {
    for (const std::string_view key : {"creates", "removes"}) {
        const std::string path = optionalTextOf(entry, key);
        if (!path.empty() && !known.contains(path))
            std::filesystem::remove(workspace.path(path));
    }
    const std::string from = optionalTextOf(entry, "moves");
    if (!from.empty() && known.contains(from) && !std::filesystem::exists(workspace.path(from)))
        std::filesystem::rename(workspace.path(textOf(entry, "to")), workspace.path(from));
}

} // namespace

std::string recover(Workspace& workspace) {
    std::optional<std::string> step;
    if (std::filesystem::exists(workspace.journal())) {
        step = "";
        const std::set<std::string> known = knownPaths(workspace.project());
        for (const json::object& entry : entriesOf(workspace.journal())) {
            if (entry.contains("step"))
                step = textOf(entry, "step");
            undo(workspace, entry, known);
        }
        copyShotStates(workspace.project(), workspace.plan());
        workspace.save();
    }
    const std::size_t unfinished = removeUnfinished(workspace.root());
    // The journal goes last: a recovery that is cut off itself can be repeated.
    std::filesystem::remove(workspace.journal());
    if (step)
        return "The step \"" + *step + "\" was cut off. Its loose ends are gone; the film can go on.";
    return unfinished > 0 ? "Unfinished documents have been removed." : "There is nothing to recover.";
}

} // namespace simulator::film
