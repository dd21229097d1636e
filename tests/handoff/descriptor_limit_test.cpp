// SPDX-License-Identifier: Apache-2.0

// Verification with several workers in a process that may open only a few more files.

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <kinovane/handoff.hpp>

#include "support/forked_process.hpp"
#include "support/limits.hpp"
#include "support/sample_film.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;

/// With so many more descriptors, a single worker can open every file of the film below.
constexpr int sufficient = 16;

/// A film whose paths lead through an absolute link and several directories, so that a worker holds many
/// descriptors while it opens a file.
class DescriptorLimit : public testing::Test {
  protected:
    WorkspaceMaker maker;

    DescriptorLimit() {
        fs::create_directory_symlink(maker.directory.path(), maker.directory / "absolute");
        for (int index = 0; index < 48; ++index)
            maker.add("dialogue", "absolute/d/d/d/d/" + std::to_string(index) + ".wav",
                      std::string(200'000, 'k'));
    }

    std::string built(unsigned workers) const {
        HandoffBuildOptions options;
        options.workers = workers;
        try {
            return encodeJSON(VistrelHandoffBuilder::build(maker.snapshot, "film", "now", options));
        } catch (const std::exception& error) {
            return error.what();
        }
    }

    std::string audited(unsigned workers) const {
        HandoffBuildOptions options;
        options.workers = workers;
        std::string text;
        try {
            for (const ArtifactOutcome& outcome : VistrelHandoffBuilder::audit(maker.snapshot, options))
                text += outcome.description() + "\n";
        } catch (const std::exception& error) {
            text = error.what();
        }
        return text;
    }
};

TEST_F(DescriptorLimit, HasTheSameEffectOnAnyNumberOfWorkers) {
    for (int spare = 0; spare <= sufficient; ++spare)
        for (const unsigned workers : {2U, 8U, 64U}) {
            SCOPED_TRACE(testing::Message() << "descriptors: " << spare << ", workers: " << workers);
            EXPECT_EQ(inForkedProcess([&] {
                          leaveDescriptors(spare);
                          return std::string(built(workers) == built(1) ? "" : "built otherwise ") +
                                 (audited(workers) == audited(1) ? "" : "audited otherwise");
                      }),
                      "");
        }
}

TEST_F(DescriptorLimit, LeavesEnoughForTheTestAbove) {
    const std::string expected = built(1);
    EXPECT_EQ(inForkedProcess([&] {
                  leaveDescriptors(sufficient);
                  return built(1);
              }),
              expected);
}

} // namespace
} // namespace kinovane::test
