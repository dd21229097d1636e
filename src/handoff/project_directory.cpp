// SPDX-License-Identifier: Apache-2.0

#include "handoff/project_directory.hpp"

#include <cerrno>
#include <climits>
#include <optional>
#include <utility>

#include <kinovane/handoff.hpp>

#include "common/files/denied_access.hpp"
#include "common/files/directory_access.hpp"
#include "common/files/location.hpp"
#include "common/files/standard_descriptors.hpp"
#include "handoff/containment.hpp"
#include "handoff/path_resolution.hpp"

namespace kinovane {

namespace fs = std::filesystem;

namespace {

/// A change that happened once is not met again; a process that keeps exchanging links could be met again and
/// again.
constexpr int attempts = 32;

/// Whether an error of the file system means that directories or links changed while a path was resolved.
bool isChange(std::error_code error) {
    return error == std::errc::too_many_symbolic_link_levels || error == std::errc::not_a_directory ||
           error == std::errc::no_such_file_or_directory || error == std::errc::invalid_argument ||
           error == std::error_code(ESTALE, std::generic_category());
}

/// Whether an error means that there is no directory at a location.
bool isMissing(std::error_code error) {
    return error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory ||
           error == std::errc::too_many_symbolic_link_levels || error == std::errc::filename_too_long;
}

/// The fast path, for nearly every file. A refusal is not final, see `openBeneath`; PathResolution then
/// decides.
std::optional<RegularFile> openQuickly(int directory, const std::string& path, const std::string& location) {
    Descriptor descriptor =
        openAboveStandard([&] { return openBeneath(directory, path.c_str(), RegularFile::openFlags); });
    if (!descriptor)
        return std::nullopt;
    return RegularFile::from(std::move(descriptor), location);
}

} // namespace

void ProjectDirectory::openDirectory() const {
    location_ = root_;
    // The system would cut the text at a NUL byte, and an empty one does not mean the working directory.
    if (holdsNUL(root_.native()) || root_.empty()) {
        failure_ = std::make_error_code(std::errc::invalid_argument);
        return;
    }
    fs::path absolute = fs::absolute(root_, failure_);
    if (failure_)
        return;
    location_ = std::move(absolute);
    prefix_ = (location_ / "").native();
    directory_ = OpenDirectory::at(location_.c_str());
    if (const std::error_code error(errno, std::generic_category()); !directory_ && !isMissing(error))
        failure_ = error;
}

const OpenDirectory& ProjectDirectory::directory() const {
    std::call_once(opened_, [this] { openDirectory(); });
    if (failure_)
        throw ProjectDirectoryError("cannot open", location_, failure_);
    return directory_;
}

RegularFile ProjectDirectory::open(const std::string& path) const {
    const auto unsafe = [&] { return VistrelHandoffError(VistrelHandoffError::unsafeArtifactPath{path}); };
    const auto missing = [&] { return VistrelHandoffError(VistrelHandoffError::missingArtifact{path}); };
    if (isUnsafeText(path))
        throw unsafe();
    const OpenDirectory& directory = this->directory();
    if (!directory)
        throw missing();

    const std::string location = prefix_ + path;
    // No program can open a file by a longer text, so the artifact is missing. Resolution would still find
    // it; here it only shows whether the path is unsafe, which is checked first.
    const bool isTooLong = location.size() >= PATH_MAX;
    if (!isTooLong)
        if (std::optional<RegularFile> file = openQuickly(directory.descriptor(), path, location))
            return std::move(*file);

    for (int attempt = 1;; ++attempt) {
        PathResolution resolution(directory);
        std::error_code error = resolution.resolve(path);
        if (leavesDirectory(resolution, error))
            throw unsafe();
        if (!error && (isTooLong || !resolution.exists()))
            throw missing();
        if (isTooLong && isDenied(error))
            throw missing();
        if (!error) {
            if (Descriptor descriptor = resolution.open(RegularFile::openFlags))
                return {std::move(descriptor), location};
            error = openFailure(errno);
            if (error == std::errc::operation_would_block) // A lease that was not released in time.
                throw fs::filesystem_error("cannot open", location, error);
        }
        if (!isChange(error) || attempt == attempts)
            throw fs::filesystem_error("cannot open", location, error);
    }
}

} // namespace kinovane
