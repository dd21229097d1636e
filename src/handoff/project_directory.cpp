#include "handoff/project_directory.hpp"

#include <algorithm>
#include <cerrno>
#include <optional>

#ifdef __linux__
#include <linux/openat2.h>
#include <sys/syscall.h>
#include <unistd.h>
#endif

#include <kinovane/handoff.hpp>

#include "common/file_location.hpp"

namespace kinovane {

namespace fs = std::filesystem;

namespace {

/// Somebody who exchanges links while they are followed is met again and again; a change that happened once
/// is not.
constexpr int attempts = 32;

/// Whether an error of the file system means that the way changed while it was followed.
bool isChange(std::error_code error) {
    return error == std::errc::too_many_symbolic_link_levels || error == std::errc::not_a_directory ||
           error == std::errc::no_such_file_or_directory || error == std::errc::invalid_argument;
}

/// The quick way, which serves nearly every file: the operating system opens the path and itself vouches that
/// it never left the directory, whoever exchanges links meanwhile. A refusal says nothing (a link may lead
/// out and another one back in, and older systems do not know the call), so the slow way then decides.
std::optional<RegularFile> openBeneath([[maybe_unused]] int root, [[maybe_unused]] const std::string& path,
                                       [[maybe_unused]] const std::string& location) {
#if defined(__linux__) && defined(SYS_openat2)
    open_how how{};
    how.flags = static_cast<decltype(how.flags)>(RegularFile::openFlags);
    how.resolve = RESOLVE_BENEATH | RESOLVE_NO_MAGICLINKS;
    Descriptor descriptor(static_cast<int>(::syscall(SYS_openat2, root, path.c_str(), &how, sizeof how)));
    if (descriptor)
        return RegularFile::from(std::move(descriptor), location);
#endif
    return std::nullopt;
}

bool climbs(std::string_view path) {
    while (!path.empty()) {
        const std::size_t slash = std::min(path.find('/'), path.size());
        if (path.substr(0, slash) == "..")
            return true;
        path.remove_prefix(std::min(slash + 1, path.size()));
    }
    return false;
}

} // namespace

ProjectDirectory::ProjectDirectory(const fs::path& root) {
    const fs::path location = fs::absolute(root);
    prefix_ = (location / "").native();
    for (int attempt = 1;; ++attempt) {
        walk_ = DirectoryWalk();
        const std::error_code error = walk_.follow(location.native());
        if (!error)
            return;
        if (!isChange(error) || attempt == attempts)
            throw fs::filesystem_error("cannot open", location, error);
    }
}

RegularFile ProjectDirectory::open(const std::string& path) const {
    const auto unsafe = [&] { return VistrelHandoffError(VistrelHandoffError::unsafeArtifactPath{path}); };
    if (path.starts_with('/') || climbs(path) || holdsNUL(path))
        throw unsafe();

    const std::string location = prefix_ + path;
    if (walk_.descriptor() >= 0)
        if (std::optional<RegularFile> file = openBeneath(walk_.descriptor(), path, location))
            return std::move(*file);

    for (int attempt = 1;; ++attempt) {
        DirectoryWalk walk = walk_;
        std::error_code error = walk.follow(path);
        // Where the way could not be followed to its end, it is the place reached so far that counts.
        const bool outside = !walk.isInside(walk_) && !(error && walk.isAt(walk_));
        // A way that is barred outside is one that leads out. Any other failure there, such as a lack of
        // descriptors, says nothing of where the way leads.
        if (outside && (!error || error == std::errc::permission_denied))
            throw unsafe();
        if (!error && !walk.arrived())
            throw VistrelHandoffError(VistrelHandoffError::missingArtifact{path});
        if (!error) {
            if (Descriptor descriptor = walk.open(RegularFile::openFlags))
                return {std::move(descriptor), location};
            error = openFailure(errno);
        }
        if (!isChange(error) || attempt == attempts)
            throw fs::filesystem_error("cannot open", location, error);
    }
}

} // namespace kinovane
