// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>

#include "film/output_file.hpp"
#include "timeline/edit.hpp"

namespace kinovane::tool {

/// A format in which a timeline can be written.
struct TimelineFormat {
    OutputKind output;
    std::string (*document)(const Edit& edit);
};

/// The format "otio", "edl" or "fcpxml".
const TimelineFormat& timelineFormat(const std::string& name);

} // namespace kinovane::tool
