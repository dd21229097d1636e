// SPDX-License-Identifier: Apache-2.0

#include "tooling/process/child_environment.hpp"

#include <string>
#include <string_view>

#include "tooling/process/inherited_environment.hpp"

namespace kinovane {

CStringArray mergedEnvironment(const std::map<std::string, std::string>& additions) {
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
