// SPDX-License-Identifier: Apache-2.0

#include <atomic>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <kinovane/handoff.hpp>

#include "support/child_counts.hpp"
#include "support/sample_film.hpp"

namespace kinovane::test {
namespace {

constexpr unsigned workerCounts[] = {0, 1, 2, 8, 10000};

/// Small files and large ones, which are read in many chunks.
void addFiles(WorkspaceMaker& maker) {
    for (std::size_t index = 0; index < 24; ++index)
        maker.add("dialogue", "dialogue/" + std::to_string(index) + ".wav",
                  std::string(index % 6 == 0 ? 3000000 + index : index, 'a'));
}

TEST(Verification, GivesTheSameDocumentForAnyNumberOfWorkers) {
    const FilmWorkspaceSnapshot sample = FilmProjectLoader::load(sampleFilm() / "run.json");
    WorkspaceMaker maker;
    addFiles(maker);
    for (const FilmWorkspaceSnapshot& snapshot : {sample, maker.snapshot}) {
        const VistrelHandoff expected = VistrelHandoffBuilder::build(snapshot, "/r", "now");
        for (const unsigned workers : workerCounts) {
            const ProcessCounts before = countProcess();
            EXPECT_EQ(VistrelHandoffBuilder::build(snapshot, "/r", "now", {workers, {}, {}}), expected)
                << workers;
            EXPECT_EQ(settledCounts(before), before);
        }
    }
}

/// A progress callback that checks every call.
class ProgressChecker {
  public:
    void operator()(const VerificationProgress& progress) {
        EXPECT_FALSE(busy_.exchange(true)) << "called from two threads at once";
        EXPECT_GE(progress.filesDone, last_.filesDone);
        EXPECT_GE(progress.bytesDone, last_.bytesDone);
        EXPECT_LE(progress.filesDone, progress.filesTotal);
        EXPECT_LE(progress.bytesDone, progress.bytesTotal);
        if (calls_ > 0) {
            EXPECT_EQ(progress.filesTotal, last_.filesTotal);
            EXPECT_EQ(progress.bytesTotal, last_.bytesTotal);
        }
        last_ = progress;
        ++calls_;
        std::this_thread::yield(); // Gives a second call time to overlap.
        busy_ = false;
    }

    const VerificationProgress& last() const { return last_; }
    int calls() const { return calls_; }

  private:
    std::atomic<bool> busy_ = false;
    VerificationProgress last_;
    int calls_ = 0;
};

TEST(Verification, ReportsProgressThatGrowsToTheTotals) {
    WorkspaceMaker maker;
    addFiles(maker);
    std::uint64_t bytes = 0;
    for (const FilmArtifact& artifact : maker.snapshot.project.artifacts)
        bytes += static_cast<std::uint64_t>(artifact.bytes);
    maker.add("archived-take", "not-exported.mp4", "content");
    for (const unsigned workers : workerCounts) {
        SCOPED_TRACE(workers);
        ProgressChecker checker;
        VistrelHandoffBuilder::build(maker.snapshot, "/r", "now", {workers, std::ref(checker), {}});
        EXPECT_EQ(checker.last().filesTotal, 24U);
        EXPECT_EQ(checker.last().filesDone, 24U);
        EXPECT_EQ(checker.last().bytesTotal, bytes);
        EXPECT_EQ(checker.last().bytesDone, bytes);
        EXPECT_TRUE(checker.last().path.starts_with("dialogue/"));
    }
}

TEST(Verification, ReportsCompleteProgressForAFilmWithoutFiles) {
    WorkspaceMaker maker;
    ProgressChecker checker;
    VistrelHandoffBuilder::build(maker.snapshot, "/r", "now", {4, std::ref(checker), {}});
    EXPECT_GE(checker.calls(), 1);
    EXPECT_EQ(checker.last().filesTotal, 0U);
    EXPECT_EQ(checker.last().bytesTotal, 0U);
}

TEST(Verification, UsesRecordedSizesForProgressOnly) {
    for (const std::int64_t recorded :
         {INT64_MIN, std::int64_t{-1}, std::int64_t{0}, std::int64_t{3}, INT64_MAX}) {
        SCOPED_TRACE(recorded);
        WorkspaceMaker maker;
        for (const char* name : {"a.wav", "b.wav", "c.wav"})
            maker.add("dialogue", name, name).bytes = recorded;
        for (const unsigned workers : {1U, 3U}) {
            ProgressChecker checker;
            const VistrelHandoff handoff =
                VistrelHandoffBuilder::build(maker.snapshot, "/r", "now", {workers, std::ref(checker), {}});
            EXPECT_EQ(handoff.assets.at(2).bytes, recorded);
            EXPECT_EQ(checker.last().filesDone, 3U);
            EXPECT_EQ(checker.last().bytesDone, checker.last().bytesTotal);
        }
    }
}

TEST(Verification, RethrowsTheExceptionOfTheCallback) {
    struct CallbackError {
        int call;
    };
    WorkspaceMaker maker;
    addFiles(maker);
    for (const unsigned workers : workerCounts)
        for (const int last : {1, 2}) {
            SCOPED_TRACE(testing::Message() << workers << " workers, call " << last);
            const ProcessCounts before = countProcess();
            int calls = 0;
            const auto throwing = [&](const VerificationProgress&) {
                if (++calls == last)
                    throw CallbackError{calls};
            };
            try {
                VistrelHandoffBuilder::build(maker.snapshot, "/r", "now", {workers, throwing, {}});
                ADD_FAILURE() << "the handoff was built";
            } catch (const CallbackError& error) {
                EXPECT_EQ(error.call, last);
            }
            EXPECT_EQ(calls, last) << "called after the exception";
            EXPECT_EQ(settledCounts(before), before) << "a thread was left";
        }
}

void expectCanceled(const FilmWorkspaceSnapshot& snapshot, const HandoffBuildOptions& options) {
    const ProcessCounts before = countProcess();
    try {
        VistrelHandoffBuilder::build(snapshot, "/r", "now", options);
        ADD_FAILURE() << "the handoff was built";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code(), std::errc::operation_canceled);
    }
    EXPECT_EQ(settledCounts(before), before);
}

TEST(Verification, EndsOnAStopRequestedBefore) {
    WorkspaceMaker maker;
    addFiles(maker);
    maker.list("score", "missing.wav");
    std::stop_source source;
    source.request_stop();
    for (const unsigned workers : workerCounts)
        expectCanceled(maker.snapshot, {workers, {}, source.get_token()});
}

TEST(Verification, EndsOnAStopRequestedMeanwhile) {
    WorkspaceMaker maker;
    addFiles(maker);
    for (const unsigned workers : workerCounts) {
        SCOPED_TRACE(workers);
        std::stop_source source;
        const auto stopping = [&](const VerificationProgress& progress) {
            EXPECT_LT(progress.filesDone, progress.filesTotal) << "the stop came too late";
            source.request_stop();
        };
        expectCanceled(maker.snapshot, {workers, stopping, source.get_token()});
    }
}

// A stop that is checked only between files would first read a sparse file of 1 TiB.
TEST(Verification, EndsOnAStopInTheMiddleOfALargeFile) {
    WorkspaceMaker maker;
    maker.list("final-master", "large.mov").bytes = std::int64_t{1} << 40U;
    std::filesystem::resize_file(maker.directory.write("large.mov", ""), std::uintmax_t{1} << 40U);
    const ProcessCounts before = countProcess();
    for (const unsigned workers : {1U, 2U}) {
        std::stop_source source;
        std::atomic<bool> reading = false;
        std::thread stopper([&] {
            reading.wait(false);
            source.request_stop();
        });
        const auto note = [&](const VerificationProgress& progress) {
            if (progress.bytesDone > 0) {
                reading = true;
                reading.notify_all();
            }
        };
        std::error_code code;
        try {
            VistrelHandoffBuilder::build(maker.snapshot, "/r", "now", {workers, note, source.get_token()});
        } catch (const std::system_error& error) {
            code = error.code();
        }
        stopper.join();
        EXPECT_EQ(code, std::errc::operation_canceled);
    }
    EXPECT_EQ(settledCounts(before), before);
}

// Otherwise the last worker would still read the largest file when the others are done. One worker keeps the
// order.
TEST(Verification, BeginsWithTheLargestFilesWithSeveralWorkers) {
    WorkspaceMaker maker;
    for (std::size_t index = 0; index < 50; ++index)
        maker.add("dialogue", "small/" + std::to_string(index), std::string(1000 + index, 'a'));
    maker.add("dialogue", "large", std::string(5'000'000, 'a'));
    maker.add("final-master", "largest", std::string(10'000'000, 'a'));
    struct Row {
        const char* sentence;
        unsigned workers;
        std::set<std::string> first;
    };
    const Row rows[] = {
        {"one worker", 1, {"small/0"}},
        {"two workers", 2, {"large", "largest"}},
        {"three workers", 3, {"large", "largest", "small/49"}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        std::vector<std::string> paths;
        const auto note = [&](const VerificationProgress& progress) { paths.push_back(progress.path); };
        VistrelHandoffBuilder::build(maker.snapshot, "/r", "now", {row.workers, note, {}});
        ASSERT_GE(paths.size(), 2U); // The first call only reports the totals.
        EXPECT_TRUE(row.first.contains(paths[1])) << paths[1];
    }
}

TEST(Verification, KeepsTheOrderOfTenThousandArtifacts) {
    WorkspaceMaker maker;
    for (int index = 0; index < 10000; ++index)
        maker.add("dialogue", "d" + std::to_string(index % 100) + "/" + std::to_string(index),
                  std::to_string(index));
    const VistrelHandoff one = VistrelHandoffBuilder::build(maker.snapshot, "/r", "now");
    ASSERT_EQ(one.assets.size(), 10000U);
    for (std::size_t index = 0; index < one.assets.size(); ++index)
        EXPECT_EQ(one.assets[index].relativePath, maker.snapshot.project.artifacts[index].path);
    EXPECT_EQ(VistrelHandoffBuilder::build(maker.snapshot, "/r", "now", {4, {}, {}}), one);
}

} // namespace
} // namespace kinovane::test
