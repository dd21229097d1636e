#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include <kinovane/tooling.hpp>

#include "common/file_location.hpp"
#include "tooling/home_directory.hpp"

namespace kinovane {

namespace fs = std::filesystem;

namespace {

/// "~" and "~/…" stand for the current user's home directory, "~name" and "~name/…" for that user's. Anything
/// else, and the name of a user without a home directory, is left as it is.
std::string expandTilde(const std::string& name) {
    if (!name.starts_with('~') || holdsNUL(name))
        return name;
    const std::size_t end = std::min(name.find('/'), name.size());
    try {
        const auto home = end == 1 ? homeDirectory() : homeDirectoryOf(name.substr(1, end - 1));
        return home ? *home + name.substr(end) : name;
    } catch (const std::system_error& error) {
        // Not "not found": the program may well be there, and what lies below "./~" is another one.
        throw FilmToolError(FilmToolError::launchFailed{name + ": " + error.what()});
    }
}

/// A location made from a path: absolute, and without the "./" that may stand in front.
fs::path locationOf(std::string_view path) {
    // With every slash behind the dot: one that is left would make the path an absolute one.
    while (path.starts_with("./"))
        path.remove_prefix(std::min(path.find_first_not_of('/', 1), path.size()));
    fs::path given(path);
    if (given.is_absolute())
        return given;
    std::error_code error;
    fs::path here = fs::current_path(error);
    if (error)
        return given;
    if (!given.empty() && given != ".")
        here /= given;
    return here;
}

/// The places of a search, in order. PATH comes first; the fixed ones may repeat it, which does no harm.
std::vector<fs::path> searchDirectories() {
    static constexpr std::array<const char*, 4> always{"/opt/homebrew/bin", "/usr/local/bin", "/usr/bin",
                                                       "/bin"};
    std::vector<fs::path> directories;
    const char* const path = std::getenv("PATH");
    std::string_view rest = path != nullptr ? path : "";
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find(':'), rest.size());
        if (end != 0)
            directories.push_back(locationOf(rest.substr(0, end)));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    directories.insert(directories.end(), always.begin(), always.end());
    return directories;
}

} // namespace

fs::path FilmToolClient::resolveExecutable(const std::string& name) {
    const std::string expanded = expandTilde(name);
    if (expanded.find('/') != std::string::npos) {
        fs::path location = locationOf(expanded);
        if (isExecutableFile(location))
            return location;
    } else if (!name.empty()) {
        for (const fs::path& directory : searchDirectories()) {
            fs::path candidate = directory / name;
            if (isExecutableFile(candidate))
                return candidate;
        }
    }
    throw FilmToolError(FilmToolError::executableNotFound{name});
}

} // namespace kinovane
