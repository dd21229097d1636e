#include <algorithm>
#include <optional>
#include <system_error>

#include <kinovane/tooling.hpp>

#include "common/file_location.hpp"
#include "tooling/home_directory.hpp"
#include "tooling/pi_version.hpp"

namespace kinovane {

namespace fs = std::filesystem;

namespace {

/// Absent when it names nothing: when it is empty, or relative without a working directory.
std::optional<fs::path> usableLocation(const fs::path& location) {
    if (location.empty() || holdsNUL(location.native()))
        return std::nullopt;
    try {
        return absoluteLocation(location);
    } catch (const fs::filesystem_error&) {
        return std::nullopt;
    }
}

/// Everything in a directory but what is hidden, as absolute locations; nothing when it cannot be listed to
/// the end.
std::vector<fs::path> visibleEntries(const fs::path& directory) {
    std::vector<fs::path> entries;
    const auto location = usableLocation(directory);
    if (!location)
        return entries;
    std::error_code error;
    fs::directory_iterator entry(*location, error);
    while (!error && entry != fs::directory_iterator()) {
        if (!entry->path().filename().native().starts_with('.'))
            entries.push_back(entry->path());
        entry.increment(error);
    }
    if (error)
        entries.clear();
    return entries;
}

/// A default root that cannot be learned has no candidates, like one that cannot be listed.
std::vector<fs::path> installedCandidates() {
    try {
        return PiExecutableResolver::bundledCandidates();
    } catch (const std::system_error&) {
        return {};
    }
}

} // namespace

fs::path PiExecutableResolver::defaultRoot() {
    const auto home = homeDirectory();
    return home ? fs::path(*home) / "Library/Application Support/QuexRun/agents/pi" : fs::path();
}

fs::path PiExecutableResolver::resolve(const std::string& command) {
    try {
        return FilmToolClient::resolveExecutable(command);
    } catch (const FilmToolError&) {
        if (command == "pi")
            if (const std::vector<fs::path> candidates = installedCandidates(); !candidates.empty())
                return candidates.front();
        throw FilmToolError(FilmToolError::executableNotFound{command});
    }
}

std::vector<fs::path> PiExecutableResolver::bundledCandidates(const fs::path& root) {
    const auto newer = [](const fs::path& left, const fs::path& right) {
        return isNewer(left.filename().native(), right.filename().native());
    };
    std::vector<fs::path> candidates;
    // Behind everything that is not older, so that equal versions keep their order.
    for (const fs::path& entry : visibleEntries(root))
        candidates.insert(std::upper_bound(candidates.begin(), candidates.end(), entry, newer), entry);
    for (fs::path& candidate : candidates)
        candidate /= "pi/pi";
    std::erase_if(candidates, [](const fs::path& candidate) { return !isExecutableFile(candidate); });
    return candidates;
}

} // namespace kinovane
