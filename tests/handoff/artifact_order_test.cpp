// SPDX-License-Identifier: Apache-2.0

#include <set>

#include <fcntl.h>
#include <sys/stat.h>

#include <gtest/gtest.h>

#include <kinovane/handoff.hpp>

#include "support/sample_film.hpp"

namespace kinovane::test {
namespace {

using Error = VistrelHandoffError;

/// Adds an artifact with a fault: u(nsafe), m(issing), h(ash mismatch), p(ipe), n(ot UTF-8); any other letter
/// adds a sound one.
void addFault(WorkspaceMaker& maker, char fault) {
    const std::string name = "fault-" + std::string(1, fault);
    switch (fault) {
    case 'u':
        maker.list("score", "../" + name);
        break;
    case 'm':
        maker.list("score", name);
        break;
    case 'h':
        maker.add("score", name, "content").sha256 = "recorded";
        break;
    case 'p':
        maker.list("score", name);
        ASSERT_EQ(::mkfifo((maker.directory / name).c_str(), 0666), 0);
        break;
    case 'n':
        maker.add("score", name + "-caf\xe9", "content");
        break;
    default:
        maker.add("score", "sound-" + std::to_string(maker.snapshot.project.artifacts.size()), "content");
    }
}

std::string failureOf(const FilmWorkspaceSnapshot& snapshot, unsigned workers) {
    try {
        VistrelHandoffBuilder::build(snapshot, "/r", "now", {workers, {}, {}});
    } catch (const std::exception& error) {
        return error.what();
    }
    return {};
}

TEST(ArtifactOrder, ReportsTheFirstFailureOfTheList) {
    const std::string unsafe = "The handoff contains an unsafe artifact path: ../fault-u";
    const std::string missing = "The handoff artifact is missing: fault-m";
    const std::string mismatch = "Artifact hash mismatch for fault-h. Expected recorded, got "
                                 "sha256:ed7002b439e9ac845f22357d822bac1444730fbdb6016d3ec9432297b9ec9f73.";
    const std::string notUTF8 = "path: the text is not UTF-8";
    struct Row {
        std::string_view faults;
        std::string expected;
    };
    const std::vector<Row> rows{
        {"........", ""},       {"u.......", unsafe},  {"m.......", missing},  {"h.......", mismatch},
        {".......u", unsafe},   {".......m", missing}, {".......h", mismatch}, {"..umh...", unsafe},
        {"..hum...", mismatch}, {"..mhu...", missing}, {"h......u", mismatch}, {"m..u...h", missing},
        {".......n", notUTF8},  {"..nu....", notUTF8}, {"..mn....", missing},  {"n......n", notUTF8},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.faults);
        WorkspaceMaker maker;
        for (const char fault : row.faults)
            addFault(maker, fault);
        for (const unsigned workers : {1U, 4U, 1U, 4U})
            EXPECT_EQ(failureOf(maker.snapshot, workers), row.expected) << workers << " workers";
    }
}

TEST(ArtifactOrder, ReportsTheFirstFailureAlthoughAnotherWorkerFindsALaterOneSooner) {
    WorkspaceMaker maker;
    maker.add("final-master", "large.mp4", std::string(std::size_t{8} << 20U, 'x')).sha256 = "recorded";
    maker.snapshot.project.artifacts[0].bytes = 0; // So that it is not examined first.
    for (int index = 0; index < 20; ++index)
        maker.list("score", "missing-" + std::to_string(index)).bytes = 1000 + index;
    const std::string expected = failureOf(maker.snapshot, 1);
    EXPECT_TRUE(expected.starts_with("Artifact hash mismatch for large.mp4. Expected recorded, got sha256:"));
    EXPECT_EQ(failureOf(maker.snapshot, 4), expected);
    EXPECT_EQ(failureOf(maker.snapshot, 64), expected);
}

TEST(ArtifactOrder, ReportsAFifoAsTheFirstFailure) {
    WorkspaceMaker maker;
    addFault(maker, 'p');
    addFault(maker, 'm');
    for (const unsigned workers : {1U, 4U}) {
        try {
            VistrelHandoffBuilder::build(maker.snapshot, "/r", "now", {workers, {}, {}});
            FAIL() << "a FIFO was published";
        } catch (const std::filesystem::filesystem_error& error) {
            EXPECT_EQ(error.path1(), maker.directory / "fault-p");
            EXPECT_EQ(error.code(), std::errc::operation_not_supported);
        }
    }
}

// Reading changes the access time of a file. Where the file system does not record that, the progress shows
// it.
TEST(ArtifactOrder, OpensNothingAfterTheFirstFailureWithOneWorker) {
    for (const char fault : {'u', 'm', 'h', 'p', 'n'}) {
        SCOPED_TRACE(fault);
        WorkspaceMaker maker;
        maker.add("score", "first", "content");
        addFault(maker, fault);
        maker.add("score", "later", "content");
        timespec longAgo{1, 0};
        const timespec times[2] = {longAgo, {2, 0}};
        ASSERT_EQ(::utimensat(AT_FDCWD, (maker.directory / "later").c_str(), times, 0), 0);
        std::set<std::string> reported;
        const auto note = [&](const VerificationProgress& progress) { reported.insert(progress.path); };
        EXPECT_ANY_THROW(VistrelHandoffBuilder::build(maker.snapshot, "/r", "now", {1, note, {}}));
        EXPECT_FALSE(reported.contains("later"));
        struct stat status{};
        ASSERT_EQ(::stat((maker.directory / "later").c_str(), &status), 0);
        EXPECT_EQ(status.st_atime, 1);
    }
}

} // namespace
} // namespace kinovane::test
