// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include <boost/json/value.hpp>

#include "timeline/edit.hpp"
#include "timeline/media_files.hpp"

namespace kinovane::tool {

/// What the user is told about a timeline. Refers to its members.
struct TimelineReport {
    const Edit& edit;
    const std::vector<EditRemark>& remarks;

    /// The facts, what was rounded, and the remarks, for a terminal of this width.
    std::string text(std::size_t columns) const;

    boost::json::value json(const std::string& format, const std::filesystem::path& output) const;
};

} // namespace kinovane::tool
