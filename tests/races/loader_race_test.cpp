// SPDX-License-Identifier: Apache-2.0

// A film is loaded while the film tool works on its documents.

#include <algorithm>
#include <array>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "races/document_versions.hpp"
#include "support/attacker.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;

constexpr int rounds = 400;
constexpr int mostRounds = 1'000'000;
constexpr std::size_t minimumTurns = 40;
constexpr std::size_t documents = DocumentVersions::names.size();

/// What the loads of one test came to.
struct Loads {
    std::array<std::set<std::size_t>, documents> versions; ///< Met of each document.
    int withoutPlan = 0;
    int refused = 0;

    bool allMet() const {
        return std::all_of(versions.begin(), versions.end(), [](const auto& met) { return met.size() == 2; });
    }
};

class LoaderRace : public testing::TestWithParam<std::size_t> {
  protected:
    LoaderRace() {
        directory.write("run.json", "{}");
        for (std::size_t document = 0; document < documents; ++document)
            directory.write(DocumentVersions::names[document], versions.text(document, 0));
    }

    fs::path place(std::size_t document) const { return directory / DocumentVersions::names[document]; }

    /// Loads once; a refusal has to begin with the name of a document.
    void load(Loads& loads) const {
        try {
            const FilmWorkspaceSnapshot film = FilmProjectLoader::load(directory / "run.json");
            note(loads, 0, versions.versionOf(film.project));
            if (film.productionPlan)
                note(loads, 1, versions.versionOf(*film.productionPlan));
            else
                ++loads.withoutPlan;
            ASSERT_TRUE(film.treatment);
            note(loads, 2, versions.versionOf(*film.treatment));
        } catch (const FilmProjectError& error) {
            const auto* invalid = std::get_if<FilmProjectError::invalidProject>(&error.value());
            ASSERT_NE(invalid, nullptr) << error.what();
            EXPECT_TRUE(std::any_of(
                DocumentVersions::names.begin(), DocumentVersions::names.end(),
                [&](const std::string& name) { return invalid->description.starts_with(name + ": "); }))
                << error.what();
            ++loads.refused;
        }
    }

    /// Loads while the tool works: so many times, and then until `isOver`.
    Loads loadWhile(const std::function<void(std::size_t turn)>& tool,
                    const std::function<bool(const Loads&)>& isOver) const {
        Loads loads;
        const Attacker attacker(tool);
        const auto goesOn = [&](int round) {
            const bool over = isOver(loads) && attacker.turns() >= minimumTurns;
            return round < (over ? rounds : mostRounds) && !HasFailure();
        };
        for (int round = 0; goesOn(round); ++round)
            load(loads);
        EXPECT_GE(attacker.turns(), minimumTurns);
        EXPECT_TRUE(isOver(loads)) << "what this test is about was never met";
        return loads;
    }

    const DocumentVersions versions{GetParam()};
    const TemporaryDirectory directory;

  private:
    static void note(Loads& loads, std::size_t document, std::optional<std::size_t> version) {
        ASSERT_TRUE(version) << DocumentVersions::names[document] << " is of no version";
        loads.versions[document].insert(*version);
    }
};

TEST_P(LoaderRace, DocumentsThatAreReplaced) {
    const Loads loads = loadWhile(
        [&](std::size_t turn) {
            for (std::size_t document = 0; document < documents; ++document) {
                directory.write("next", versions.text(document, (turn + 1) % 2));
                fs::rename(directory / "next", place(document));
            }
        },
        [](const Loads& met) { return met.allMet(); });
    EXPECT_EQ(loads.refused, 0);
    EXPECT_EQ(loads.withoutPlan, 0);
}

TEST_P(LoaderRace, APlanThatComesAndGoes) {
    const auto tool = [&](std::size_t /*turn*/) {
        fs::rename(place(1), directory / "away");
        fs::rename(directory / "away", place(1));
    };
    loadWhile(tool, [](const Loads& met) { return met.withoutPlan > 0 && met.versions[1].contains(0); });
}

// A tool that does not replace its documents may be met in the middle of one. That is an error, not a film.
TEST_P(LoaderRace, DocumentsThatAreWrittenInPlace) {
    const auto tool = [&](std::size_t turn) {
        for (std::size_t document = 0; document < documents; ++document) {
            std::ofstream file(place(document), std::ios::binary);
            std::string_view text = versions.text(document, (turn + 1) % 2);
            while (!text.empty()) {
                const std::string_view piece = text.substr(0, 4000);
                file << piece << std::flush;
                text.remove_prefix(piece.size());
            }
        }
    };
    loadWhile(tool, [](const Loads& met) { return met.allMet() && met.refused > 0; });
}

// Documents that one reading takes, and one that needs several.
INSTANTIATE_TEST_SUITE_P(Longer, LoaderRace, testing::Values(1, 37, 2000));

} // namespace
} // namespace kinovane::test
