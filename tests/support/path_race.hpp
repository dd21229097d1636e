// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include <gtest/gtest.h>

#include <kinovane/handoff.hpp>

#include "support/repeating_thread.hpp"
#include "support/sanitizers.hpp"
#include "support/temporary_directory.hpp"

namespace kinovane::test {

/// Verifies one artifact of the project "film" while another thread changes the directories and links on its
/// path. The recorded digest is that of a file outside the project, so an artifact that is accepted was read
/// outside.
class PathRace {
  public:
    TemporaryDirectory area;

    explicit PathRace(const std::string& path) {
        area.write("film/inside.bin", "inside");
        area.write("film/sub/secret.bin", "inside");
        area.write("outside/secret.bin", "outside");
        std::filesystem::create_symlink("../film", area / "outside/back");
        snapshot_.root = area / "film";
        snapshot_.productionPlan.emplace();
        snapshot_.project.artifacts = {{7, "t", "c", "poster", path, digestOf("outside"), "s"}};
    }

    struct Counts {
        int unsafe = 0; ///< The artifact was refused as unsafe.
        int inside = 0; ///< The file inside was read.
        int other = 0;  ///< The path changed during every attempt.
    };

    /// Calls `change` again and again on another thread, with the number of earlier calls. Meanwhile builds
    /// and audits in turn: a fixed number of rounds, and then until the file inside was read and, with
    /// `leadsOutside`, the path was refused as unsafe.
    Counts run(const std::function<void(std::size_t turn)>& change, bool leadsOutside = true) const {
        Counts counts;
        const RepeatingThread thread(change);
        thread.awaitTurn();
        const auto continues = [&](int round) {
            const bool bothSeen =
                counts.inside > 0 && (counts.unsafe > 0 || !leadsOutside) && thread.turns() > minimumTurns;
            return round < (bothSeen ? rounds : maximumRounds) && !testing::Test::HasFailure();
        };
        for (int round = 0; continues(round); ++round)
            if (round % 2 == 0)
                build(counts);
            else
                audit(counts);
        EXPECT_GT(thread.turns(), minimumTurns);
        EXPECT_GT(counts.inside, 0);
        EXPECT_TRUE(counts.unsafe > 0 || !leadsOutside) << "the path never led outside";
        return counts;
    }

  private:
    static constexpr int rounds = memoryIsSanitized ? 400 : 4000; ///< Much slower under the sanitizers.
    static constexpr int maximumRounds = 400'000;
    static constexpr std::size_t minimumTurns = 100;

    static std::string digestOf(std::string_view text) {
        return VistrelHandoffBuilder::sha256(std::as_bytes(std::span(text)));
    }

    void build(Counts& counts) const {
        try {
            VistrelHandoffBuilder::build(snapshot_, "/r");
            ADD_FAILURE() << "the file outside the project was published";
        } catch (const VistrelHandoffError& error) {
            count(error, counts);
        } catch (const std::filesystem::filesystem_error&) {
            ++counts.other;
        }
    }

    void audit(Counts& counts) const {
        for (const ArtifactOutcome& outcome : VistrelHandoffBuilder::audit(snapshot_)) {
            EXPECT_FALSE(outcome.sound()) << "the file outside the project was accepted";
            if (outcome.refusal)
                count(*outcome.refusal, counts);
            else
                ++counts.other;
        }
    }

    static void count(const VistrelHandoffError& error, Counts& counts) {
        if (std::holds_alternative<VistrelHandoffError::unsafeArtifactPath>(error.value()))
            ++counts.unsafe;
        else if (const auto* mismatch = std::get_if<VistrelHandoffError::hashMismatch>(&error.value())) {
            EXPECT_EQ(mismatch->actual, digestOf("inside")) << "the file outside was read";
            ++counts.inside;
        } else {
            ADD_FAILURE() << error.what();
        }
    }

    FilmWorkspaceSnapshot snapshot_;
};

} // namespace kinovane::test
