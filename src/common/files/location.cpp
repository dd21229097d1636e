// SPDX-License-Identifier: Apache-2.0

#include "common/files/location.hpp"

#include <algorithm>
#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kinovane {

namespace fs = std::filesystem;

namespace {

/// The target of a symbolic link. Any other file, a missing one and a link in a loop are returned unchanged.
/// A link that cannot be read is an error: without its target, ".." would lead to another directory.
fs::path linkTarget(fs::path location) {
    if (holdsNUL(location.native()))
        return location;
    std::error_code error;
    const fs::file_status status = fs::symlink_status(location, error);
    if (error && status.type() != fs::file_type::not_found)
        throw fs::filesystem_error("cannot examine", location, error);
    if (!fs::is_symlink(status))
        return location;
    fs::path target = fs::weakly_canonical(location, error);
    if (error == std::errc::too_many_symbolic_link_levels)
        return location;
    if (error)
        throw fs::filesystem_error("cannot follow", location, error);
    return target;
}

} // namespace

WorkingDirectory::WorkingDirectory() : path_(fs::current_path(error_)) {}

fs::path WorkingDirectory::absolute(const fs::path& location) const {
    if (location.empty() || location.is_absolute())
        return location;
    if (error_)
        throw fs::filesystem_error("getcwd", location, error_);
    std::string_view rest = location.native();
    // Together with all slashes after the dot: a remaining slash would make the rest an absolute path.
    while (rest.starts_with("./"))
        rest.remove_prefix(std::min(rest.find_first_not_of('/', 1), rest.size()));
    return rest.empty() || rest == "." ? path_ : path_ / rest;
}

fs::path absoluteLocation(const fs::path& location) {
    return location.is_absolute() ? location : WorkingDirectory().absolute(location);
}

fs::path standardized(const fs::path& location) {
    const fs::path absolute = absoluteLocation(location);
    fs::path result = absolute.root_path();
    for (const fs::path& component : absolute.relative_path()) {
        if (component.empty() || component == ".")
            continue;
        if (component != "..") {
            result /= component;
            continue;
        }
        result = linkTarget(std::move(result)).parent_path();
    }
    return result;
}

std::string pathText(const fs::path& location) {
    try {
        return absoluteLocation(location).string();
    } catch (const fs::filesystem_error&) {
        return location.string();
    }
}

bool mayExist(const fs::path& location) noexcept {
    struct stat status{};
    if (holdsNUL(location.native()))
        return false;
    if (::stat(location.c_str(), &status) == 0)
        return true;
    return errno != ENOENT && errno != ENOTDIR && errno != ELOOP && errno != ENAMETOOLONG;
}

bool isKnownToExist(const fs::path& location) noexcept {
    struct stat status{};
    return !holdsNUL(location.native()) && ::stat(location.c_str(), &status) == 0;
}

bool isExecutableFile(const fs::path& location) noexcept {
    struct stat status{};
    return !holdsNUL(location.native()) && ::stat(location.c_str(), &status) == 0 &&
           S_ISREG(status.st_mode) && ::faccessat(AT_FDCWD, location.c_str(), X_OK, AT_EACCESS) == 0;
}

} // namespace kinovane
