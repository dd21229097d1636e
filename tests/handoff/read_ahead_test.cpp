// SPDX-License-Identifier: Apache-2.0

#include "handoff/read_ahead.hpp"

#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <kinovane/handoff.hpp>

#include "handoff/file_digest.hpp"
#include "support/child_counts.hpp"
#include "support/temporary_directory.hpp"

namespace kinovane::test {
namespace {

/// Bytes that depend on their position, so that an exchanged or repeated chunk is detected.
std::string numberedBytes(std::size_t size) {
    std::string bytes;
    bytes.reserve(size + 8);
    for (std::size_t number = 0; bytes.size() < size; ++number)
        bytes += std::to_string(number) + " ";
    bytes.resize(size);
    return bytes;
}

std::string readAhead(RegularFile& file, std::size_t bufferSize) {
    std::vector<std::byte> buffer(bufferSize);
    ReadAhead reader(file, buffer);
    std::string bytes;
    for (auto chunk = reader.next(); !chunk.empty(); chunk = reader.next())
        for (const std::byte byte : chunk)
            bytes += static_cast<char>(byte);
    EXPECT_TRUE(reader.next().empty()) << "after the end";
    return bytes;
}

TEST(ReadAhead, ReturnsTheFileInOrder) {
    const TemporaryDirectory directory;
    constexpr std::size_t buffer = 400; // four chunks of 100
    for (const unsigned size : {0U, 1U, 99U, 100U, 101U, 399U, 400U, 401U, 5000U, 100000U}) {
        SCOPED_TRACE(size);
        const std::string content = numberedBytes(size);
        RegularFile file(directory.write("file", content));
        EXPECT_EQ(readAhead(file, buffer), content);
    }
}

TEST(ReadAhead, CanBeDestroyedAtAnyPoint) {
    const TemporaryDirectory directory;
    const auto location = directory.write("file", numberedBytes(10000));
    const ProcessCounts before = countProcess();
    for (int chunks = 0; chunks < 12; ++chunks) {
        RegularFile file(location);
        std::vector<std::byte> buffer(400);
        ReadAhead reader(file, buffer);
        for (int chunk = 0; chunk < chunks; ++chunk)
            EXPECT_EQ(reader.next().size(), 100U);
    }
    EXPECT_EQ(settledCounts(before), before);
}

#ifdef __linux__
TEST(ReadAhead, ThrowsTheErrorOfReading) {
    // A regular file whose first byte cannot be read: nothing lies at address 0.
    RegularFile file("/proc/self/mem");
    std::vector<std::byte> buffer(400);
    ReadAhead reader(file, buffer);
    try {
        reader.next();
        FAIL() << "reading succeeded";
    } catch (const std::filesystem::filesystem_error& error) {
        EXPECT_EQ(error.code(), std::errc::io_error);
        EXPECT_EQ(error.path1(), "/proc/self/mem");
    }
}
#endif

TEST(FileDigest, IsTheSameWithAndWithoutReadingAhead) {
    const TemporaryDirectory directory;
    FileDigest digest;
    constexpr std::size_t large = std::size_t{4} << 20U;
    for (const std::size_t size : {std::size_t{0}, std::size_t{5}, large - 1, large, large + 12345}) {
        SCOPED_TRACE(size);
        const std::string content = numberedBytes(size);
        const auto location = directory.write("file", content);
        const std::string expected = VistrelHandoffBuilder::sha256(std::as_bytes(std::span(content)));
        for (const bool readsAhead : {false, true}) {
            RegularFile file(location);
            std::size_t reported = 0;
            EXPECT_EQ(digest.of(file, [&](std::size_t bytes) { reported += bytes; }, readsAhead), expected);
            EXPECT_EQ(reported, size);
        }
    }
}

} // namespace
} // namespace kinovane::test
