// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <cerrno>
#include <memory>
#include <optional>
#include <system_error>

#include <dirent.h>
#include <fcntl.h>

#include <kinovane/tooling.hpp>

#include "common/files/location.hpp"
#include "common/files/standard_descriptors.hpp"
#include "tooling/film_tool/pi_version.hpp"
#include "tooling/process/home_directory.hpp"

namespace kinovane {

namespace fs = std::filesystem;

namespace {

/// Makes a location absolute. Absent if it is empty or holds a NUL byte, or if it is relative and the working
/// directory cannot be read.
std::optional<fs::path> listableLocation(const fs::path& location) {
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

/// Null if the location cannot be opened as a directory.
OpenDirectory openForListing(const fs::path& location) {
    const ReservedStandardDescriptors reserved;
    if (reserved.error() != 0)
        return nullptr;
    Descriptor descriptor(retryInterrupted(
        [&] { return ::open(location.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK); }));
    OpenDirectory directory(descriptor ? ::fdopendir(descriptor.get()) : nullptr);
    if (directory)
        descriptor.release(); // closedir closes it.
    return directory;
}

/// Returns the absolute locations of all entries of a directory that are not hidden; none if it cannot be
/// listed completely. Does not use std::filesystem::directory_iterator: in GNU's C++ library it ends the
/// process when memory runs out, and its descriptor may be 0, 1 or 2.
std::vector<fs::path> visibleEntries(const fs::path& root) {
    std::vector<fs::path> entries;
    const auto location = listableLocation(root);
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

/// A default root that cannot be determined has no candidates, like one that cannot be listed.
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
    const auto isNewerEntry = [](const fs::path& left, const fs::path& right) {
        return isNewer(left.filename().native(), right.filename().native());
    };
    std::vector<fs::path> candidates;
    // Each entry goes behind all that are not older, so that equal versions keep their order.
    for (const fs::path& entry : visibleEntries(root))
        candidates.insert(std::upper_bound(candidates.begin(), candidates.end(), entry, isNewerEntry), entry);
    for (fs::path& candidate : candidates)
        candidate /= "pi/pi";
    std::erase_if(candidates, [](const fs::path& candidate) { return !isExecutableFile(candidate); });
    return candidates;
}

} // namespace kinovane
