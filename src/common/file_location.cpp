#include "common/file_location.hpp"

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kinovane {

namespace fs = std::filesystem;

fs::path standardized(const fs::path& location) {
    const fs::path absolute = fs::absolute(location);
    fs::path result = absolute.root_path();
    for (const fs::path& piece : absolute.relative_path()) {
        if (piece.empty() || piece == ".")
            continue;
        if (piece != "..") {
            result /= piece;
            continue;
        }
        std::error_code ignored;
        if (!holdsNUL(result.native()) && fs::is_symlink(fs::symlink_status(result, ignored))) {
            if (fs::path target = fs::weakly_canonical(result, ignored); !ignored)
                result = std::move(target);
        }
        result = result.parent_path();
    }
    return result;
}

std::string pathText(const fs::path& location) {
    std::error_code error;
    const fs::path absolute = fs::absolute(location, error);
    return error ? location.string() : absolute.string();
}

bool somethingExistsAt(const fs::path& location) noexcept {
    struct stat status{};
    if (holdsNUL(location.native()))
        return false;
    if (::stat(location.c_str(), &status) == 0)
        return true;
    return errno != ENOENT && errno != ENOTDIR && errno != ELOOP && errno != ENAMETOOLONG;
}

bool isExecutableFile(const fs::path& location) noexcept {
    struct stat status{};
    return !holdsNUL(location.native()) && ::stat(location.c_str(), &status) == 0 &&
           S_ISREG(status.st_mode) && ::faccessat(AT_FDCWD, location.c_str(), X_OK, AT_EACCESS) == 0;
}

} // namespace kinovane
