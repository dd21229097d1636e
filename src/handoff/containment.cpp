// SPDX-License-Identifier: Apache-2.0

#include "handoff/containment.hpp"

#include <algorithm>
#include <cstddef>

#include "common/files/denied_access.hpp"
#include "common/files/location.hpp"

namespace kinovane {

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

bool leavesDirectory(const PathResolution& resolution, std::error_code error) {
    if (resolution.metMagicLink())
        return true;
    // After an error the location reached so far decides. It may be the start itself.
    const bool isOutside = !resolution.isBelowStart() && !(error && resolution.isAtStart());
    // A directory outside that may not be searched still shows that the path leads out. Any other error
    // there, such as too many open files, does not show where the path leads.
    return isOutside && (!error || isDenied(error));
}

} // namespace kinovane
