// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "support/sample_film.hpp"

namespace kinovane::test {

/// The smallest film-project.json, with the first occurrence of `part` replaced.
inline std::string projectWith(std::string_view part, std::string_view replacement) {
    std::string text = smallestProject();
    const std::size_t position = text.find(part);
    if (position == std::string::npos)
        throw std::logic_error("the project has no such text: " + std::string(part));
    return text.replace(position, part.size(), replacement);
}

} // namespace kinovane::test
