// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <cerrno>
#include <memory>
#include <optional>
#include <system_error>

#include <dirent.h>
#include <fcntl.h>

#include <kinovane/tooling.hpp>

#include "common/files/descriptor.hpp"
#include "common/files/location.hpp"
#include "tooling/film_tool/pi_version.hpp"
#include "tooling/process/home_directory.hpp"

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

struct CloseDirectory {
    void operator()(DIR* directory) const noexcept { ::closedir(directory); }
};
using OpenDirectory = std::unique_ptr<DIR, CloseDirectory>;

/// Null when the location cannot be opened as a directory.
OpenDirectory openForListing(const fs::path& location) {
    const ReservedStandardDescriptors reserved;
    if (reserved.error() != 0)
        return nullptr;
    Descriptor descriptor(retryInterrupted(
        [&] { return ::open(location.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK); }));
    OpenDirectory directory(descriptor ? ::fdopendir(descriptor.get()) : nullptr);
    if (directory)
        descriptor.release(); // Closed with the directory from now on.
    return directory;
}

/// All entries of a directory but the hidden ones, as absolute locations; none when it cannot be listed to
/// the end. std::filesystem::directory_iterator is no choice: in GNU's C++ library it ends the process when
/// it is out of memory, and its descriptor may become a standard one.
std::vector<fs::path> visibleEntries(const fs::path& root) {
    std::vector<fs::path> entries;
    const auto location = usableLocation(root);
    if (!location)
        return entries;
    const OpenDirectory directory = openForListing(*location);
    if (!directory)
        return entries;
    for (;;) {
        errno = 0;
        const dirent* const entry = ::readdir(directory.get());
        if (entry == nullptr)
            return errno == 0 ? entries : std::vector<fs::path>{};
        if (entry->d_name[0] != '.')
            entries.push_back(*location / entry->d_name);
    }
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
