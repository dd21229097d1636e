// SPDX-License-Identifier: Apache-2.0

#include "timeline/fcpxml_assets.hpp"

#include <algorithm>
#include <numeric>

namespace kinovane::tool {

std::string fcpxmlTime(std::int64_t frames, const FrameRate& rate) {
    const std::int64_t numerator = frames * rate.denominator;
    const std::int64_t divisor = std::gcd(numerator, rate.numerator);
    const std::int64_t denominator = rate.numerator / divisor;
    return std::to_string(numerator / divisor) + (denominator == 1 ? "" : "/" + std::to_string(denominator)) +
           "s";
}

FCPXMLAssets::FCPXMLAssets(const Edit& edit) : edit_(edit) {
    for (const EditShot& shot : edit.shots)
        if (const EditMedia* clip = shot.presentClip())
            add(*clip, true, shot.length);
    for (const EditTrack& track : edit.tracks)
        for (const EditSound& sound : track.sounds)
            add(sound.media, false, sound.length);
}

void FCPXMLAssets::add(const EditMedia& media, bool hasVideo, std::int64_t length) {
    const auto [position, isNew] = positions_.emplace(media.url, assets_.size());
    if (isNew)
        assets_.push_back({&media, "asset" + std::to_string(assets_.size() + 1), hasVideo, 0});
    Asset& asset = assets_[position->second];
    asset.length = std::max(asset.length, length);
}

const std::string& FCPXMLAssets::idOf(const EditMedia& media) const {
    return assets_[positions_.at(media.url)].id;
}

void FCPXMLAssets::write(XMLWriter& xml, const std::string& format) const {
    for (const Asset& asset : assets_) {
        XMLWriter::Attributes attributes{{"id", asset.id},
                                         {"name", asset.media->name},
                                         {"start", "0s"},
                                         {"duration", fcpxmlTime(asset.length, edit_.rate)}};
        if (asset.hasVideo) {
            attributes.emplace_back("hasVideo", "1");
            attributes.emplace_back("format", format);
        } else {
            attributes.emplace_back("hasAudio", "1");
        }
        xml.begin("asset", attributes);
        xml.empty("media-rep", {{"kind", "original-media"}, {"src", asset.media->url}});
        xml.end();
    }
}

} // namespace kinovane::tool
