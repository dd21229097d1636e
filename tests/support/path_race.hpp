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

#include "support/attacker.hpp"
#include "support/sanitizers.hpp"
#include "support/temporary_directory.hpp"

namespace kinovane::test {

/// The project "film" with one artifact whose recorded digest is that of a file outside the project. The
/// library must never accept the artifact, because that would publish the outside file.
class BesiegedFilm {
  public:
    TemporaryDirectory area;

    explicit BesiegedFilm(const std::string& path) {
        area.write("film/inside.bin", "inside");
        area.write("film/sub/secret.bin", "inside");
        area.write("outside/secret.bin", "outside");
        std::filesystem::create_symlink("../film", area / "outside/back");
        snapshot_.root = area / "film";
        snapshot_.productionPlan.emplace();
        snapshot_.project.artifacts = {{7, "t", "c", "poster", path, digestOf("outside"), "s"}};
    }

    /// How often the artifact was refused as unsafe, and how often the file inside the project was read
    /// instead.
    struct Tally {
        int unsafe = 0;
        int inside = 0;
        int other = 0; ///< The path changed while it was resolved.
    };

    /// Alternates build and audit while `attack` runs on another thread: a fixed number of rounds, and then
    /// until each outcome has occurred. With `isRefused` false no refusal is expected.
    Tally besiege(const std::function<void(std::size_t turn)>& attack, bool isRefused = true) const {
        Tally tally;
        const Attacker attacker(attack);
        attacker.awaitTurn();
        const auto isUnfinished = [&](int round) {
            const bool complete =
                tally.inside > 0 && (tally.unsafe > 0 || !isRefused) && attacker.turns() > minimumTurns;
            return round < (complete ? rounds : maximumRounds) && !testing::Test::HasFailure();
        };
        for (int round = 0; isUnfinished(round); ++round)
            round % 2 == 0 ? build(tally) : audit(tally);
        EXPECT_GT(attacker.turns(), minimumTurns);
        EXPECT_GT(tally.inside, 0);
        EXPECT_TRUE(tally.unsafe > 0 || !isRefused)
            << "the link that leads out of the project was never followed";
        return tally;
    }

  private:
    static constexpr int rounds = underThreadSanitizer ? 400 : 4000; ///< Each round takes much longer there.
    static constexpr int maximumRounds = 400'000;
    static constexpr std::size_t minimumTurns = 100;

    static std::string digestOf(std::string_view text) {
        return VistrelHandoffBuilder::sha256(std::as_bytes(std::span(text)));
    }

    void build(Tally& tally) const {
        try {
            VistrelHandoffBuilder::build(snapshot_, "/r");
            ADD_FAILURE() << "the file outside the project was published";
        } catch (const VistrelHandoffError& error) {
            count(error, tally);
        } catch (const std::filesystem::filesystem_error&) {
            ++tally.other;
        }
    }

    void audit(Tally& tally) const {
        for (const ArtifactOutcome& outcome : VistrelHandoffBuilder::audit(snapshot_)) {
            EXPECT_FALSE(outcome.sound()) << "the file outside the project was accepted";
            if (outcome.refusal)
                count(*outcome.refusal, tally);
            else
                ++tally.other;
        }
    }

    static void count(const VistrelHandoffError& error, Tally& tally) {
        if (std::holds_alternative<VistrelHandoffError::unsafeArtifactPath>(error.value()))
            ++tally.unsafe;
        else if (const auto* mismatch = std::get_if<VistrelHandoffError::hashMismatch>(&error.value())) {
            EXPECT_EQ(mismatch->actual, digestOf("inside")) << "the file outside the project was read";
            ++tally.inside;
        } else {
            ADD_FAILURE() << error.what();
        }
    }

    FilmWorkspaceSnapshot snapshot_;
};

} // namespace kinovane::test
