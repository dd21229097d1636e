// SPDX-License-Identifier: Apache-2.0

// A process is killed at any moment while it writes.

#include <algorithm>
#include <array>
#include <chrono>
#include <filesystem>
#include <random>
#include <string>

#include <gmock/gmock.h>

#include "races/manifest_versions.hpp"
#include "races/writer_process.hpp"
#include "support/rounds.hpp"
#include "support/temporary_directory.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

/// Chooses the delays before the kills: every other one from the whole duration of a write, the others close
/// to the moment of the rename. That moment depends on the load of the machine, so the estimate is adjusted.
class KillDelay {
  public:
    Clock::duration next() {
        isNarrow_ = !isNarrow_;
        const double spread = isNarrow_ ? 0.2 : 1;
        std::uniform_real_distribution<double> factor(1 - spread, 1 + spread);
        return std::chrono::duration_cast<Clock::duration>(estimate_ * factor(random_));
    }

    void adjust(bool wasEarly) { estimate_ *= wasEarly ? 1.05 : 1 / 1.05; }

  private:
    std::mt19937 random_{20260301}; // NOLINT(*-msc51-cpp): a fixed seed
    std::chrono::duration<double, std::milli> estimate_{0.5};
    bool isNarrow_ = false;
};

class KilledWriter : public testing::Test {
  protected:
    /// Starts a writer and kills it during its second write, which replaces the manifest of the first.
    void killOne() {
        WriterProcess writer(target_, 2, {0, 1});
        writer.awaitBegin();
        writer.awaitBegin();
        const Clock::time_point end = Clock::now() + delay_.next();
        while (Clock::now() < end) {
        }
        duringWrite += writer.killDuringWrite() ? 1 : 0;
        const std::string text = contentOf(target_);
        EXPECT_TRUE(text == texts_[0] || text == texts_[1]) << "the manifest is not whole";
        const bool isUnchanged = text == texts_[0];
        delay_.adjust(isUnchanged);
        if (isUnchanged)
            ++unchanged;
        else
            ++replaced;
    }

    /// A killed process leaves its temporary file. Its name must not look like a manifest.
    void removeTemporaryFiles() {
        for (const std::string& name : namesIn(directory_.path())) {
            if (name == "manifest.json")
                continue;
            EXPECT_TRUE(name.starts_with(".kinovane-") && name.ends_with(".tmp")) << name;
            ++temporaryFiles;
            fs::remove(directory_ / name);
        }
    }

    void expectWritable() const {
        VistrelHandoffBuilder::write(manifestVersion(0), target_);
        EXPECT_EQ(contentOf(target_), texts_[0]);
        EXPECT_THAT(namesIn(directory_.path()), testing::ElementsAre("manifest.json"));
    }

    int duringWrite = 0;
    int unchanged = 0; ///< The manifest of the first write was found.
    int replaced = 0;  ///< The manifest of the second write was found.
    int temporaryFiles = 0;

  private:
    TemporaryDirectory directory_;
    const fs::path target_ = directory_ / "manifest.json";
    const std::array<std::string, 2> texts_{manifestText(0), manifestText(1)};
    KillDelay delay_;
};

TEST_F(KilledWriter, LeavesAWholeManifest) {
    const int kills = raceRounds(200);
    for (int kill = 0; kill < kills && !HasFailure(); ++kill) {
        SCOPED_TRACE(testing::Message() << "kill " << kill);
        killOne();
        removeTemporaryFiles();
    }
    expectWritable();
    // The kills were spread over the whole write.
    EXPECT_GT(duringWrite, kills / 5);
    EXPECT_GT(unchanged, kills / 20);
    EXPECT_GT(replaced, kills / 20);
    RecordProperty("duringWrite", duringWrite);
    RecordProperty("unchanged", unchanged);
    RecordProperty("replaced", replaced);
    RecordProperty("temporaryFiles", temporaryFiles);
}

} // namespace
} // namespace kinovane::test
