// SPDX-License-Identifier: Apache-2.0

#include "tooling/process/child_environment.hpp"

#include <cstdlib>
#include <map>
#include <string>
#include <string_view>
#include <utility>

#include "tooling/process/executable_lookup.hpp"
#include "tooling/process/inherited_environment.hpp"

namespace kinovane {

namespace {

/// Whether a directory is one of the entries of a search path.
bool holdsDirectory(std::string_view searchPath, std::string_view directory) {
    const std::string entries = std::string(":").append(searchPath).append(":");
    return entries.find(std::string(":").append(directory).append(":")) != std::string::npos;
}

/// The search path with the missing ones of the fixed directories at its end.
std::string extended(std::string searchPath) {
    for (const char* const directory : fixedSearchDirectories)
        if (!holdsDirectory(searchPath, directory))
            searchPath.append(searchPath.empty() ? "" : ":").append(directory);
    return searchPath;
}

} // namespace

CStringArray childEnvironment(const RunOptions& options) {
    std::map<std::string, std::string> additions = options.environment;
    if (options.extendPath) {
        const char* const inherited = std::getenv("PATH");
        const auto path = additions.try_emplace("PATH", inherited == nullptr ? "" : inherited).first;
        path->second = extended(std::move(path->second));
    }
    CStringArray merged;
    for (char** entry = inheritedEnvironment(); entry != nullptr && *entry != nullptr; ++entry) {
        const std::string_view text = *entry;
        if (!additions.contains(std::string(text.substr(0, text.find('=')))))
            merged.add(std::string(text));
    }
    for (const auto& [key, value] : additions)
        merged.add(std::string(key).append("=").append(value));
    return merged;
}

} // namespace kinovane
