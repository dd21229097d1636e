// SPDX-License-Identifier: Apache-2.0

// A process is killed at any moment of its writing.

#include <algorithm>
#include <array>
#include <chrono>
#include <filesystem>
#include <random>
#include <string>

#include <gmock/gmock.h>

#include "races/manifest_versions.hpp"
#include "races/writer_process.hpp"
#include "support/temporary_directory.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

/// Picks the moments: every other one at any time of a writing, the others close to where the new manifest
/// takes the old one's place. Where that is, it learns on the way: it depends on what else the machine does.
class Aim {
  public:
    Clock::duration next() {
        isClose_ = !isClose_;
        const double spread = isClose_ ? 0.2 : 1;
        std::uniform_real_distribution<double> factor(1 - spread, 1 + spread);
        return std::chrono::duration_cast<Clock::duration>(middle_ * factor(random_));
    }

    void learn(bool wasEarly) { middle_ *= wasEarly ? 1.05 : 1 / 1.05; }

  private:
    std::mt19937 random_{20260301}; // NOLINT(*-msc51-cpp): the same row of numbers every time
    std::chrono::duration<double, std::milli> middle_{0.5};
    bool isClose_ = false;
};

class KilledWriter : public testing::Test {
  protected:
    static constexpr int kills = 1000;

    /// Starts a writer, which first writes one manifest, and kills it while it replaces that by another.
    void killOne() {
        WriterProcess writer(target_, 2, {0, 1});
        writer.awaitBeginning();
        writer.awaitBeginning();
        const Clock::time_point end = Clock::now() + aim_.next();
        while (Clock::now() < end) {
        }
        whileWriting += writer.killedWhileWriting() ? 1 : 0;
        const std::string text = contentOf(target_);
        EXPECT_TRUE(text == texts_[0] || text == texts_[1]) << "the manifest is not whole";
        aim_.learn(text == texts_[0]);
        ++(text == texts_[0] ? old : renewed);
    }

    /// A killed process cannot clean up behind itself. What it left must not pass for a manifest.
    void removeRemains() {
        for (const std::string& name : namesIn(directory_.path())) {
            if (name == "manifest.json")
                continue;
            EXPECT_TRUE(name.starts_with(".kinovane-") && name.ends_with(".tmp")) << name;
            ++left;
            fs::remove(directory_ / name);
        }
    }

    void expectWritable() const {
        VistrelHandoffBuilder::write(manifestVersion(0), target_);
        EXPECT_EQ(contentOf(target_), texts_[0]);
        EXPECT_THAT(namesIn(directory_.path()), testing::ElementsAre("manifest.json"));
    }

    int whileWriting = 0;
    int old = 0;     ///< How often the manifest was still the one from before,
    int renewed = 0; ///< and how often it was the new one.
    int left = 0;    ///< Temporary files.

  private:
    TemporaryDirectory directory_;
    const fs::path target_ = directory_ / "manifest.json";
    const std::array<std::string, 2> texts_{manifestText(0), manifestText(1)};
    Aim aim_;
};

TEST_F(KilledWriter, LeavesAWholeManifest) {
    for (int kill = 0; kill < kills && !HasFailure(); ++kill) {
        SCOPED_TRACE(testing::Message() << "kill " << kill);
        killOne();
        removeRemains();
    }
    expectWritable();
    // Otherwise the kills did not come at every moment.
    EXPECT_GT(whileWriting, 200);
    EXPECT_GT(old, 50);
    EXPECT_GT(renewed, 50);
    RecordProperty("whileWriting", whileWriting);
    RecordProperty("old", old);
    RecordProperty("renewed", renewed);
    RecordProperty("left", left);
}

} // namespace
} // namespace kinovane::test
