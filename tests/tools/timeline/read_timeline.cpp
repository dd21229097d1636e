// SPDX-License-Identifier: Apache-2.0

#include "tools/timeline/read_timeline.hpp"

#include <stdexcept>
#include <string_view>

namespace kinovane::test {

ReadTimeline readTimeline(const std::string& format, const std::string& document, const FrameRate& rate) {
    if (format == "otio")
        return readOTIO(document, rate);
    return format == "edl" ? readEDL(document, rate) : readFCPXML(document, rate);
}

std::filesystem::path fileOf(const std::string& url, const std::filesystem::path& folder) {
    constexpr std::string_view scheme = "file://";
    std::string path;
    for (std::size_t index = url.starts_with(scheme) ? scheme.size() : 0; index < url.size(); ++index)
        if (url[index] == '%') {
            path += static_cast<char>(std::stoi(url.substr(index + 1, 2), nullptr, 16));
            index += 2;
        } else if (static_cast<unsigned char>(url[index]) <= ' ' || url[index] == '?' || url[index] == '#') {
            throw std::runtime_error("not a path of a URL: " + url);
        } else {
            path += url[index];
        }
    return folder / path;
}

} // namespace kinovane::test
