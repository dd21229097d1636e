// SPDX-License-Identifier: Apache-2.0

#include "handoff/project_directory.hpp"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <optional>
#include <utility>

#ifdef __linux__
#include <linux/openat2.h>
#include <sys/syscall.h>
#include <unistd.h>
#endif

#include <kinovane/handoff.hpp>

#include "common/files/location.hpp"
#include "handoff/directory_walk.hpp"

namespace kinovane {

namespace fs = std::filesystem;

namespace {

/// Somebody who exchanges links while they are followed is met again and again; a change that happened once
/// is not.
constexpr int attempts = 32;

/// Whether an error of the file system means that directories or links changed while they were followed.
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

/// The fast path, which serves nearly every file: the operating system opens the artifact's path and itself
/// vouches that it never left the directory, even if links are exchanged meanwhile. A refusal says nothing (a
/// link may lead out and another one back in, and older systems do not know the call), so the slow path then
/// decides.
std::optional<RegularFile> openBeneath([[maybe_unused]] int directory,
                                       [[maybe_unused]] const std::string& path,
                                       [[maybe_unused]] const std::string& location) {
#if defined(__linux__) && defined(SYS_openat2)
    open_how how{};
    how.flags = static_cast<decltype(how.flags)>(RegularFile::openFlags);
    how.resolve = RESOLVE_BENEATH | RESOLVE_NO_MAGICLINKS;
    Descriptor descriptor = openAboveStandard(
        [&] { return static_cast<int>(::syscall(SYS_openat2, directory, path.c_str(), &how, sizeof how)); });
    if (descriptor)
        return RegularFile::from(std::move(descriptor), location);
#endif
    return std::nullopt;
}

/// Whether the text of a path alone shows that it does not lead to a file of the project: it is absolute,
/// climbs, names the project's directory itself, or would be cut by the system.
bool isUnsafeText(std::string_view path) {
    if (path.starts_with('/') || holdsNUL(path))
        return true;
    bool namesEntry = false;
    while (!path.empty()) {
        const std::size_t slash = std::min(path.find('/'), path.size());
        const std::string_view component = path.substr(0, slash);
        if (component == "..")
            return true;
        namesEntry = namesEntry || (!component.empty() && component != ".");
        path.remove_prefix(std::min(slash + 1, path.size()));
    }
    return !namesEntry;
}

} // namespace

void ProjectDirectory::openDirectory() const {
    location_ = root_;
    // The system would cut the one, and the working directory is not meant by the other.
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
    // The system takes no longer text, so for every other program nothing exists there. A walk would find the
    // file all the same; here it only tells whether the path leads out, which comes first.
    const bool isTooLong = location.size() >= PATH_MAX;
    if (!isTooLong)
        if (std::optional<RegularFile> file = openBeneath(directory.descriptor(), path, location))
            return std::move(*file);

    for (int attempt = 1;; ++attempt) {
        DirectoryWalk walk(directory);
        std::error_code error = walk.follow(path);
        if (walk.metMagicLink())
            throw unsafe();
        // Where the path could not be followed to its end, it is the place reached so far that counts.
        const bool outside = !walk.isBelowStart() && !(error && walk.isAtStart());
        // A path that is barred outside is one that leads out. Any other failure there, such as a lack of
        // descriptors, says nothing of where the path leads.
        if (outside && (!error || error == std::errc::permission_denied))
            throw unsafe();
        if (!error && (isTooLong || !walk.exists()))
            throw missing();
        if (isTooLong && error == std::errc::permission_denied)
            throw missing();
        if (!error) {
            if (Descriptor descriptor = walk.open(RegularFile::openFlags))
                return {std::move(descriptor), location};
            error = openFailure(errno);
            if (error == std::errc::operation_would_block) // A lease, which has been waited for.
                throw fs::filesystem_error("cannot open", location, error);
        }
        if (!isChange(error) || attempt == attempts)
            throw fs::filesystem_error("cannot open", location, error);
    }
}

} // namespace kinovane
