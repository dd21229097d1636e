// SPDX-License-Identifier: Apache-2.0

#include "timeline/sound_length.hpp"

#include <string>

#include <sys/stat.h>

#include <gtest/gtest.h>

#include "support/sample_film.hpp"

namespace kinovane::test {

namespace {

std::string number(std::uint32_t value) {
    std::string bytes;
    for (int index = 0; index < 4; ++index, value /= 256)
        bytes += static_cast<char>(value % 256);
    return bytes;
}

/// A format chunk with this number of bytes a second.
std::string formatOf(std::uint32_t bytesPerSecond) {
    return "fmt " + number(16) + std::string("\x01\x00\x01\x00", 4) + number(8000) + number(bytesPerSecond) +
           std::string("\x02\x00\x10\x00", 4);
}

std::string waveOf(const std::string& chunks) { return "RIFF" + number(4) + "WAVE" + chunks; }

TEST(SoundLength, IsReadFromTheHeader) {
    const std::string second(1000, '\0');
    const struct {
        const char* sentence;
        std::string content;
        std::optional<std::int64_t> expected;
    } rows[]{
        {"one second", waveOf(formatOf(1000) + "data" + number(1000) + second), 1000},
        {"a part of a millisecond", waveOf(formatOf(3000) + "data" + number(1000) + second), 333},
        {"other chunks, one of odd length",
         waveOf("LIST" + number(3) + "abc" + '\0' + formatOf(1000) + "fact" + number(4) + number(0) + "data" +
                number(1000) + second),
         1000},
        {"a length that was never written", waveOf(formatOf(1000) + "data" + number(0xFFFFFFFF) + second),
         1000},
        {"a file that was cut short", waveOf(formatOf(1000) + "data" + number(1000) + second.substr(0, 500)),
         500},
        {"no sound", waveOf(formatOf(1000) + "data" + number(0)), 0},
        {"no bytes a second", waveOf(formatOf(0) + "data" + number(1000) + second), std::nullopt},
        {"data before the format", waveOf("data" + number(1000) + second + formatOf(1000)), std::nullopt},
        {"no data", waveOf(formatOf(1000)), std::nullopt},
        {"a format that ends early", waveOf("fmt " + number(16) + "abc"), std::nullopt},
        {"another format", "ID3" + second, std::nullopt},
        {"nothing", "", std::nullopt},
    };
    const TemporaryDirectory directory;
    for (const auto& [sentence, content, expected] : rows)
        EXPECT_EQ(tool::soundLength(directory.write("sound", content)), expected) << sentence;
}

TEST(SoundLength, IsUnknownForWhatIsNoFile) {
    const TemporaryDirectory directory;
    ::mkfifo((directory / "pipe").c_str(), 0600);
    EXPECT_EQ(tool::soundLength(directory / "pipe"), std::nullopt);
    EXPECT_EQ(tool::soundLength(directory.path()), std::nullopt);
    EXPECT_EQ(tool::soundLength(directory / "none"), std::nullopt);
}

} // namespace

} // namespace kinovane::test
