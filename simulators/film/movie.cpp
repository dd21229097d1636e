// SPDX-License-Identifier: Apache-2.0

#include "movie.hpp"

#include <numeric>
#include <string_view>

#include "bytes.hpp"
#include "picture.hpp"

namespace film {
namespace {

constexpr std::uint32_t timescale = 1000;

/// What the tables of one track say about its samples. A size of its own for each sample is only stored where
/// the sizes differ.
struct Track {
    std::uint32_t id = 0;
    std::string_view handler;
    std::string mediaHeader, sampleEntry;
    std::uint32_t unitsPerSecond = 0, units = 0, milliseconds = 0;
    std::string sampleTimes, sampleSizes;
    std::uint32_t sampleCount = 0, place = 0;
};

std::string box(std::string_view type, const std::string& content) {
    return Bytes().big32(size32(content.size() + 8)).text(type).text(content).content();
}

std::string fullBox(std::string_view type, std::uint32_t flags, const std::string& content) {
    return box(type, Bytes().big32(flags).content() + content);
}

/// The identity transformation that pictures are shown with.
std::string matrix() {
    Bytes bytes;
    bytes.big32(0x10000).zeros(12).big32(0x10000).zeros(12).big32(0x40000000);
    return bytes.content();
}

/// A descriptor that says "object type 0x6D, visual": the registered number for PNG pictures.
std::string pictureDescriptor() {
    Bytes decoder;
    decoder.byte(0x04).byte(13).byte(0x6D).byte(0x11).zeros(11);
    Bytes stream;
    stream.byte(0x03).byte(size32(3 + decoder.size() + 3)).big16(1).byte(0);
    stream.text(decoder.content()).byte(0x06).byte(1).byte(2);
    return fullBox("esds", 0, stream.content());
}

std::string pictureEntry() {
    Bytes entry;
    entry.zeros(6).big16(1).zeros(16).big16(pictureWidth).big16(pictureHeight);
    entry.big32(0x480000).big32(0x480000).zeros(4).big16(1).zeros(32).big16(24).big16(0xFFFF);
    return box("mp4v", entry.content() + pictureDescriptor());
}

std::string soundEntry() {
    Bytes entry;
    entry.zeros(6).big16(1).zeros(8).big16(1).big16(16).zeros(4).big32(sampleRate << 16U);
    return box("sowt", entry.content());
}

std::string sampleTable(const Track& track) {
    const std::string place = Bytes().big32(1).big32(track.place).content();
    // All samples of a track lie in one piece.
    const std::string chunk = Bytes().big32(1).big32(1).big32(track.sampleCount).big32(1).content();
    return box("stbl", fullBox("stsd", 0, Bytes().big32(1).text(track.sampleEntry).content()) +
                           fullBox("stts", 0, track.sampleTimes) + fullBox("stsc", 0, chunk) +
                           fullBox("stsz", 0, track.sampleSizes) + fullBox("stco", 0, place));
}

std::string trackBox(const Track& track) {
    const bool visual = track.handler == "vide";
    Bytes header;
    header.zeros(8).big32(track.id).zeros(4).big32(track.milliseconds).zeros(12).big16(visual ? 0 : 0x100);
    header.zeros(2).text(matrix()).big32(visual ? pictureWidth << 16U : 0);
    header.big32(visual ? pictureHeight << 16U : 0);

    Bytes media;
    media.zeros(8).big32(track.unitsPerSecond).big32(track.units).big16(0x55C4).zeros(2);
    Bytes handler;
    handler.zeros(4).text(track.handler).zeros(12).text("stand-in").zeros(1);
    const std::string sameFile =
        box("dinf", fullBox("dref", 0, Bytes().big32(1).content() + fullBox("url ", 1, "")));

    return box("trak",
               fullBox("tkhd", 3, header.content()) +
                   box("mdia", fullBox("mdhd", 0, media.content()) + fullBox("hdlr", 0, handler.content()) +
                                   box("minf", track.mediaHeader + sameFile + sampleTable(track))));
}

std::string movieBox(const std::vector<Track>& tracks) {
    Bytes header;
    header.zeros(8).big32(timescale).big32(tracks.front().milliseconds).big32(0x10000).big16(0x100).zeros(10);
    header.text(matrix()).zeros(24).big32(size32(tracks.size()) + 1);
    std::string content = fullBox("mvhd", 0, header.content());
    for (const Track& track : tracks)
        content += trackBox(track);
    return box("moov", content);
}

Track pictureTrack(const std::vector<MovieFrame>& frames) {
    Bytes times;
    Bytes sizes;
    times.big32(size32(frames.size()));
    sizes.big32(0).big32(size32(frames.size()));
    std::int64_t total = 0;
    for (const MovieFrame& frame : frames) {
        times.big32(1).big32(static_cast<std::uint32_t>(frame.milliseconds));
        sizes.big32(size32(frame.png.size()));
        total += frame.milliseconds;
    }
    const auto length = static_cast<std::uint32_t>(total);
    const std::string mediaHeader = fullBox("vmhd", 1, Bytes().zeros(8).content());
    return {1,      "vide",          mediaHeader,     pictureEntry(),        timescale, length,
            length, times.content(), sizes.content(), size32(frames.size()), 0};
}

Track soundTrack(const Samples& sound) {
    const std::uint32_t count = size32(sound.size());
    const auto length = static_cast<std::uint32_t>(std::uint64_t{count} * timescale / sampleRate);
    const std::string mediaHeader = fullBox("smhd", 0, Bytes().zeros(4).content());
    return {2,
            "soun",
            mediaHeader,
            soundEntry(),
            sampleRate,
            count,
            length,
            Bytes().big32(1).big32(count).big32(1).content(),
            Bytes().big32(2).big32(count).content(),
            count,
            0};
}

} // namespace

std::string encodeMovie(const std::vector<MovieFrame>& frames, const Samples& sound) {
    const std::string fileType = box("ftyp", Bytes().text("isom").big32(512).text("isommp41").content());
    Bytes media;
    for (const MovieFrame& frame : frames)
        media.text(frame.png);
    const std::uint32_t pictureSize = size32(media.size());
    for (const std::int16_t value : sound)
        media.little16(static_cast<std::uint16_t>(value));

    std::vector<Track> tracks{pictureTrack(frames)};
    if (!sound.empty())
        tracks.push_back(soundTrack(sound));
    // The places do not change the size of the tables that hold them, so the first round measures and the
    // second one fills them in.
    const std::size_t start = fileType.size() + movieBox(tracks).size() + 8;
    tracks.front().place = size32(start);
    if (!sound.empty())
        tracks.back().place = size32(start + pictureSize);
    return fileType + movieBox(tracks) + box("mdat", media.content());
}

} // namespace film
