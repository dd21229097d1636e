#include <atomic>
#include <filesystem>
#include <functional>
#include <span>
#include <thread>

#include <gtest/gtest.h>

#include <kinovane/handoff.hpp>

#include "support/sample_film.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;

constexpr int rounds = 4000;

/// Exchanges what lies at a place, as fast as it can, until it is destroyed. The place is never empty.
class Attacker {
  public:
    /// `prepare` makes, under the given name, what is to be put in place; it is told which of the two is
    /// wanted.
    Attacker(fs::path place, std::function<void(const fs::path&, bool)> prepare)
        : thread_(
              [this, place = std::move(place), prepare = std::move(prepare)](const std::stop_token& stop) {
                  fs::path next = place;
                  next += ".next";
                  for (bool outside = true; !stop.stop_requested(); outside = !outside) {
                      prepare(next, outside);
                      fs::rename(next, place);
                      ++exchanges_;
                  }
              }) {}

    int exchanges() const { return exchanges_; }

  private:
    std::atomic<int> exchanges_ = 0;
    std::jthread thread_;
};

/// The project "film" with one artifact, recorded with the digest of a file that lies outside: to accept it
/// would be to publish that file.
struct Stage {
    TemporaryDirectory area;
    FilmWorkspaceSnapshot snapshot;

    explicit Stage(const std::string& path) {
        area.write("film/inside.bin", "inside");
        area.write("film/sub/secret.bin", "inside");
        area.write("outside/secret.bin", "outside");
        fs::create_symlink("../film", area / "outside/back");
        snapshot.root = area / "film";
        snapshot.productionPlan.emplace();
        snapshot.project.artifacts = {{7, "t", "c", "poster", path, digestOf("outside"), "s"}};
    }

    static std::string digestOf(std::string_view text) {
        return VistrelHandoffBuilder::sha256(std::as_bytes(std::span(text)));
    }

    /// How often the artifact was refused as unsafe, and how often the file inside was met.
    struct Tally {
        int unsafe = 0;
        int inside = 0;
        int other = 0;
    };

    void attempt(Tally& tally) const {
        try {
            VistrelHandoffBuilder::build(snapshot, "/r");
            ADD_FAILURE() << "the file outside was published";
        } catch (const VistrelHandoffError& error) {
            if (std::holds_alternative<VistrelHandoffError::unsafeArtifactPath>(error.value()))
                ++tally.unsafe;
            else if (const auto* mismatch = std::get_if<VistrelHandoffError::hashMismatch>(&error.value())) {
                EXPECT_EQ(mismatch->actual, digestOf("inside")) << "the file outside was read";
                ++tally.inside;
            } else {
                ADD_FAILURE() << error.what();
            }
        } catch (const fs::filesystem_error&) {
            ++tally.other; // The way would not hold still.
        }
    }

    void besiege(const fs::path& place, const std::function<void(const fs::path&, bool)>& prepare) const {
        prepare(area / place.string(), false);
        const Attacker attacker(area / place.string(), prepare);
        Tally tally;
        for (int round = 0; round < rounds && !::testing::Test::HasFailure(); ++round)
            attempt(tally);
        EXPECT_GT(attacker.exchanges(), 0);
        EXPECT_GT(tally.unsafe + tally.inside, 0);
        ::testing::Test::RecordProperty("unsafe", tally.unsafe);
        ::testing::Test::RecordProperty("inside", tally.inside);
        ::testing::Test::RecordProperty("other", tally.other);
    }
};

TEST(LinkRace, ALinkToAFile) {
    Stage("l").besiege("film/l", [](const fs::path& name, bool outside) {
        fs::create_symlink(outside ? "../outside/secret.bin" : "inside.bin", name);
    });
}

TEST(LinkRace, ALinkToAFolder) {
    Stage("l/secret.bin").besiege("film/l", [](const fs::path& name, bool outside) {
        fs::create_symlink(outside ? "../outside" : "sub", name);
    });
}

TEST(LinkRace, AFileThatBecomesALink) {
    Stage("l").besiege("film/l", [](const fs::path& name, bool outside) {
        if (outside)
            fs::create_symlink("../outside/secret.bin", name);
        else
            fs::copy_file(name.parent_path() / "inside.bin", name);
    });
}

TEST(LinkRace, ALinkBehindOneThatLeadsOutAndBackIn) {
    const Stage stage("way/back/l");
    fs::create_symlink("../outside", stage.area / "film/way");
    stage.besiege("film/l", [](const fs::path& name, bool outside) {
        fs::create_symlink(outside ? "../outside/secret.bin" : "inside.bin", name);
    });
}

TEST(LinkRace, AFolderBehindALinkThatLeadsOutAndBackIn) {
    const Stage stage("way/back/l/secret.bin");
    fs::create_symlink("../outside", stage.area / "film/way");
    stage.besiege("film/l", [](const fs::path& name, bool outside) {
        fs::create_symlink(outside ? "../outside" : "sub", name);
    });
}

} // namespace
} // namespace kinovane::test
