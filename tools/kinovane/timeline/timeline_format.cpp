// SPDX-License-Identifier: Apache-2.0

#include "timeline/timeline_format.hpp"

#include <filesystem>
#include <functional>
#include <map>
#include <string_view>

#include "film/file_content.hpp"
#include "timeline/edl_writer.hpp"
#include "timeline/fcpxml_writer.hpp"
#include "timeline/otio_writer.hpp"

namespace kinovane::tool {

namespace fs = std::filesystem;

namespace {

bool isOTIO(const fs::path& file) {
    const std::string beginning = beginningOf(file);
    return beginning.starts_with('{') && beginning.find("\"OTIO_SCHEMA\"") != std::string::npos;
}

bool isEDL(const fs::path& file) { return beginningOf(file).starts_with("TITLE:"); }

bool isFCPXML(const fs::path& file) { return beginningOf(file).find("<fcpxml ") != std::string::npos; }

} // namespace

const TimelineFormat& timelineFormat(const std::string& name) {
    static const std::map<std::string, TimelineFormat, std::less<>> formats{
        {"otio", {{"timeline", "OpenTimelineIO document", "timeline.otio", isOTIO}, otioDocument}},
        {"edl", {{"timeline", "EDL", "timeline.edl", isEDL}, edlDocument}},
        {"fcpxml", {{"timeline", "FCPXML document", "timeline.fcpxml", isFCPXML}, fcpxmlDocument}},
    };
    return formats.at(name);
}

} // namespace kinovane::tool
