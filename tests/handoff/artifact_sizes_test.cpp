// SPDX-License-Identifier: Apache-2.0

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include <sys/stat.h>

#include <gtest/gtest.h>

#include <kinovane/handoff.hpp>

#include "support/sample_film.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;

constexpr std::uintmax_t oneTiB = std::uintmax_t{1} << 40U;

std::string digestOf(std::string_view content) {
    return VistrelHandoffBuilder::sha256(std::as_bytes(std::span(content)));
}

/// The outcome of an artifact "a" with a recorded size and the digest of "abc".
ArtifactOutcome outcomeOf(const fs::path& root, std::int64_t recorded, bool compareSizes,
                          const HandoffBuildOptions& others = {}) {
    FilmArtifact artifact;
    artifact.path = "a";
    artifact.bytes = recorded;
    artifact.sha256 = digestOf("abc");
    HandoffBuildOptions options = others;
    options.compareSizes = compareSizes;
    return VistrelHandoffBuilder::examine(root, {&artifact, 1}, options).at(0);
}

struct Expected {
    std::string description;
    std::optional<std::uint64_t> actualBytes;
    bool sizeDiffers = false;
};

void expectOutcome(const ArtifactOutcome& outcome, const Expected& expected) {
    EXPECT_EQ(outcome.description(), expected.description);
    EXPECT_EQ(outcome.actualBytes, expected.actualBytes);
    EXPECT_EQ(outcome.sizeDiffers, expected.sizeDiffers);
    EXPECT_EQ(outcome.sound(), outcome.description() == "The handoff artifact is sound: a");
}

TEST(ArtifactSizes, AreComparedBeforeTheFileIsRead) {
    struct Row {
        const char* sentence;
        std::string content;
        std::int64_t recorded;
        Expected expected;
    };
    const std::string sound = "The handoff artifact is sound: a";
    const std::string differs = "Film artifact size does not match: a: ";
    const std::string mismatch = "Artifact hash mismatch for a. Expected " + digestOf("abc") + ", got ";
    const Row rows[] = {
        {"the recorded size and digest", "abc", 3, {sound, 3}},
        {"the recorded size and another digest", "abd", 3, {mismatch + digestOf("abd") + ".", 3}},
        {"a file that was cut short", "ab", 3, {differs + "2 bytes, recorded 3", 2, true}},
        {"a file that is longer", "abcd", 3, {differs + "4 bytes, recorded 3", 4, true}},
        {"an empty file", "", 3, {differs + "0 bytes, recorded 3", 0, true}},
        {"an empty file, recorded as empty", "", 0, {mismatch + digestOf("") + ".", 0}},
        {"the recorded digest, recorded as empty", "abc", 0, {differs + "3 bytes, recorded 0", 3, true}},
        {"a negative size", "abc", -3, {differs + "3 bytes, recorded -3", 3, true}},
        {"the smallest size", "", INT64_MIN, {differs + "0 bytes, recorded -9223372036854775808", 0, true}},
        {"the largest size", "abc", INT64_MAX, {differs + "3 bytes, recorded 9223372036854775807", 3, true}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const TemporaryDirectory root;
        root.write("a", row.content);
        expectOutcome(outcomeOf(root.path(), row.recorded, true), row.expected);
    }
}

TEST(ArtifactSizes, AreOnlyReportedUnlessComparisonIsRequested) {
    const TemporaryDirectory root;
    root.write("a", "abc");
    for (const std::int64_t recorded : {INT64_MIN, std::int64_t{0}, std::int64_t{3}, INT64_MAX}) {
        SCOPED_TRACE(recorded);
        expectOutcome(outcomeOf(root.path(), recorded, false), {"The handoff artifact is sound: a", 3});
    }
}

TEST(ArtifactSizes, AreAbsentWhenNoRegularFileCanBeOpened) {
    struct Row {
        const char* sentence;
        std::function<void(const TemporaryDirectory&)> make;
        std::string description;
    };
    const std::string unreadable = "The handoff artifact could not be read: a ";
    const Row rows[] = {
        {"a missing file", [](const TemporaryDirectory&) {}, "The handoff artifact is missing: a"},
        {"a directory", [](const TemporaryDirectory& root) { fs::create_directory(root / "a"); },
         unreadable + "(Is a directory)"},
        {"a FIFO", [](const TemporaryDirectory& root) { ASSERT_EQ(::mkfifo((root / "a").c_str(), 0600), 0); },
         unreadable + "(Operation not supported)"},
        {"a link out of the directory",
         [](const TemporaryDirectory& root) { fs::create_symlink("/etc/passwd", root / "a"); },
         "The handoff contains an unsafe artifact path: a"},
    };
    for (const Row& row : rows)
        for (const bool compareSizes : {false, true}) {
            SCOPED_TRACE(row.sentence);
            const TemporaryDirectory root;
            row.make(root);
            expectOutcome(outcomeOf(root.path(), -1, compareSizes), {row.description, {}});
        }
}

TEST(ArtifactSizes, KeepAFileOfAnotherSizeFromBeingRead) {
    const TemporaryDirectory root;
    fs::resize_file(root.write("a", ""), oneTiB);
    for (const unsigned workers : {1U, 2U}) {
        SCOPED_TRACE(workers);
        std::vector<std::uint64_t> bytesDone;
        HandoffBuildOptions options{.workers = workers};
        options.onProgress = [&](const VerificationProgress& progress) {
            bytesDone.push_back(progress.bytesDone);
            // Reading the whole file would take an hour.
            if (progress.bytesDone > 0 && progress.filesDone == 0)
                throw std::logic_error("the file is read");
        };
        expectOutcome(
            outcomeOf(root.path(), 5, true, options),
            {"Film artifact size does not match: a: 1099511627776 bytes, recorded 5", oneTiB, true});
        EXPECT_EQ(bytesDone, (std::vector<std::uint64_t>{0, 5}));
    }
}

TEST(ArtifactSizes, KeepTheProgressGrowingToTheTotals) {
    WorkspaceMaker maker;
    maker.add("poster", "sound", "abc");
    maker.add("poster", "longer", "abcd").bytes = 3;
    maker.add("poster", "negative", "ab").bytes = -2;
    maker.add("poster", "shorter", "ab").bytes = 1000;
    maker.list("poster", "missing").bytes = 7;
    for (const unsigned workers : {1U, 3U}) {
        SCOPED_TRACE(workers);
        VerificationProgress last;
        HandoffBuildOptions options{.workers = workers, .compareSizes = true};
        options.onProgress = [&](const VerificationProgress& progress) {
            EXPECT_GE(progress.filesDone, last.filesDone);
            EXPECT_GE(progress.bytesDone, last.bytesDone);
            EXPECT_EQ(progress.bytesTotal, 1013U);
            last = progress;
        };
        VistrelHandoffBuilder::audit(maker.snapshot, options);
        EXPECT_EQ(last.filesDone, 5U);
        EXPECT_EQ(last.bytesDone, 1013U);
    }
}

// The size, like the contents, is that of the opened file, not of a file that takes its place.
TEST(ArtifactSizes, AreThoseOfTheFileThatIsRead) {
    WorkspaceMaker maker;
    const std::string content(3'000'000, 'a');
    maker.add("poster", "a", content);
    maker.directory.write("other", "another size");
    HandoffBuildOptions options{.compareSizes = true};
    options.onProgress = [&](const VerificationProgress& progress) {
        if (progress.bytesDone == 0 || !fs::exists(maker.directory / "other"))
            return;
        EXPECT_EQ(progress.filesDone, 0U) << "the file was read before it was replaced";
        fs::rename(maker.directory / "other", maker.directory / "a");
    };
    expectOutcome(VistrelHandoffBuilder::audit(maker.snapshot, options).at(0),
                  {"The handoff artifact is sound: a", content.size()});
    EXPECT_EQ(contentOf(maker.directory / "a"), "another size");
}

TEST(ArtifactSizes, ArePartOfTheOutcomesThatAreReported) {
    WorkspaceMaker maker;
    maker.add("poster", "sound", "abc");
    maker.add("poster", "longer", "abcd").bytes = 3;
    maker.add("poster", "changed", "abc").sha256 = std::string(emptyDigest);
    maker.list("poster", "missing");
    std::vector<ArtifactOutcome> reported;
    HandoffBuildOptions options{.compareSizes = true};
    options.onOutcome = [&](const ArtifactOutcome& outcome) { reported.push_back(outcome); };
    EXPECT_EQ(VistrelHandoffBuilder::audit(maker.snapshot, options), reported);
    std::vector<std::optional<std::uint64_t>> sizes;
    for (const ArtifactOutcome& outcome : reported)
        sizes.push_back(outcome.actualBytes);
    EXPECT_EQ(sizes, (std::vector<std::optional<std::uint64_t>>{3, 4, 3, std::nullopt}));
    EXPECT_TRUE(reported.at(1).sizeDiffers);
}

TEST(ArtifactSizes, AreReportedButNotComparedByABuild) {
    WorkspaceMaker maker;
    maker.add("poster", "a", "abc").bytes = 7;
    std::vector<ArtifactOutcome> reported;
    HandoffBuildOptions options{.compareSizes = true};
    options.onOutcome = [&](const ArtifactOutcome& outcome) { reported.push_back(outcome); };
    const VistrelHandoff handoff = VistrelHandoffBuilder::build(maker.snapshot, "/r", "now", options);
    EXPECT_EQ(handoff.assets.at(0).bytes, 7);
    ASSERT_EQ(reported.size(), 1U);
    expectOutcome(reported[0], {"The handoff artifact is sound: a", 3});
}

} // namespace
} // namespace kinovane::test
