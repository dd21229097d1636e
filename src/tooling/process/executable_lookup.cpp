// SPDX-License-Identifier: Apache-2.0

#include "tooling/process/executable_lookup.hpp"

#include <algorithm>
#include <cstdlib>
#include <string_view>
#include <system_error>
#include <utility>

#include <kinovane/process.hpp>

#include "tooling/process/home_directory.hpp"

namespace kinovane {

namespace fs = std::filesystem;

namespace {

/// Replaces "~" at the beginning by the current user's home directory, and "~name" by that user's. Anything
/// else is unchanged, as is the name of a user without a home directory.
std::string expandTilde(const std::string& name) {
    if (!name.starts_with('~') || holdsNUL(name))
        return name;
    const std::size_t end = std::min(name.find('/'), name.size());
    try {
        const auto home = end == 1 ? homeDirectory() : homeDirectoryOf(name.substr(1, end - 1));
        return home ? *home + name.substr(end) : name;
    } catch (const std::system_error& error) {
        // Not executableNotFound: the program may exist. Nor is "~" left as it is: "./~/…" is another file.
        throw FilmToolError(FilmToolError::launchFailed{name + ": " + error.what()});
    }
}

} // namespace

ExecutableLookup::ExecutableLookup(std::string name) : name_(std::move(name)) {
    if (const char* const path = std::getenv("PATH"))
        searchPath_ = path;
}

std::optional<fs::path> ExecutableLookup::executableAt(const fs::path& location) const {
    try {
        fs::path absolute = workingDirectory_.absolute(location);
        if (isExecutableFile(absolute))
            return absolute;
        return std::nullopt;
    } catch (const fs::filesystem_error& error) {
        // A working directory that was removed holds no program. Any other error is reported, because going
        // on could find another program of the same name.
        if (error.code() == std::errc::no_such_file_or_directory)
            return std::nullopt;
        throw FilmToolError(FilmToolError::launchFailed{name_ + ": getcwd: " + error.code().message()});
    }
}

fs::path ExecutableLookup::find() const {
    const std::string expanded = expandTilde(name_);
    if (expanded.find('/') != std::string::npos) {
        if (auto found = executableAt(expanded))
            return *std::move(found);
    } else if (!name_.empty()) {
        // The directories of PATH come first. A fixed one that is also in PATH is searched twice.
        std::string_view rest = searchPath_;
        while (!rest.empty()) {
            const std::size_t end = std::min(rest.find(':'), rest.size());
            if (end != 0)
                if (auto found = executableAt(fs::path(rest.substr(0, end)) / name_))
                    return *std::move(found);
            rest.remove_prefix(std::min(end + 1, rest.size()));
        }
        for (const char* const directory : fixedSearchDirectories)
            if (auto found = executableAt(fs::path(directory) / name_))
                return *std::move(found);
    }
    throw FilmToolError(FilmToolError::executableNotFound{name_});
}

} // namespace kinovane
