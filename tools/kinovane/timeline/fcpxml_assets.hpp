// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "timeline/edit.hpp"
#include "timeline/xml_writer.hpp"

namespace kinovane::tool {

/// A number of frames in seconds, as FCPXML has times: "5s", "1001/24000s".
std::string fcpxmlTime(std::int64_t frames, const FrameRate& rate);

/// The files that an edit refers to, as resources of an FCPXML document. Each has one identifier, however
/// often it is used.
class FCPXMLAssets {
  public:
    /// The edit must outlive this object.
    explicit FCPXMLAssets(const Edit& edit);

    /// The identifier of a file that has a URL.
    const std::string& idOf(const EditMedia& media) const;

    /// Writes an element for each file. `format` is the identifier of the format of pictures.
    void write(XMLWriter& xml, const std::string& format) const;

  private:
    struct Asset {
        const EditMedia* media;
        std::string id;
        bool hasVideo;
        std::int64_t length; ///< In frames, as far as it is used.
    };

    void add(const EditMedia& media, bool hasVideo, std::int64_t length);

    const Edit& edit_;
    std::vector<Asset> assets_;                    ///< In the order of their first use.
    std::map<std::string, std::size_t> positions_; ///< By URL.
};

} // namespace kinovane::tool
