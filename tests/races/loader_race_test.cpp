// SPDX-License-Identifier: Apache-2.0

// A film is loaded while the film tool writes its documents.

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
#include "support/repeating_thread.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;

constexpr int rounds = 400;
constexpr int maximumRounds = 1'000'000;
constexpr std::size_t minimumTurns = 40;
constexpr std::size_t documents = DocumentVersions::names.size();

/// The results of many loads.
struct LoadCounts {
    std::array<std::set<std::size_t>, documents> versions; ///< Seen of each document.
    int withoutPlan = 0;
    int invalid = 0;

    bool allSeen() const {
        return std::all_of(versions.begin(), versions.end(),
                           [](const auto& seen) { return seen.size() == 2; });
    }
};

class LoaderRace : public testing::TestWithParam<std::size_t> {
  protected:
    LoaderRace() {
        directory.write("run.json", "{}");
        for (std::size_t document = 0; document < documents; ++document)
            directory.write(DocumentVersions::names[document], versions.text(document, 0));
    }

    fs::path fileOf(std::size_t document) const { return directory / DocumentVersions::names[document]; }

    /// Loads once; the description of an invalid project has to begin with the name of a document.
    void load(LoadCounts& counts) const {
        try {
            const FilmWorkspaceSnapshot film = FilmProjectLoader::load(directory / "run.json");
            note(counts, 0, versions.versionOf(film.project));
            if (film.productionPlan)
                note(counts, 1, versions.versionOf(*film.productionPlan));
            else
                ++counts.withoutPlan;
            ASSERT_TRUE(film.treatment);
            note(counts, 2, versions.versionOf(*film.treatment));
        } catch (const FilmProjectError& error) {
            const auto* invalid = std::get_if<FilmProjectError::invalidProject>(&error.value());
            ASSERT_NE(invalid, nullptr) << error.what();
            EXPECT_TRUE(std::any_of(
                DocumentVersions::names.begin(), DocumentVersions::names.end(),
                [&](const std::string& name) { return invalid->description.starts_with(name + ": "); }))
                << error.what();
            ++counts.invalid;
        }
    }

    /// Loads while `tool` is called on another thread: a fixed number of times, and then until `isComplete`.
    LoadCounts loadWhile(const std::function<void(std::size_t turn)>& tool,
                         const std::function<bool(const LoadCounts&)>& isComplete) const {
        LoadCounts counts;
        const RepeatingThread changes(tool);
        const auto continues = [&](int round) {
            const bool complete = isComplete(counts) && changes.turns() >= minimumTurns;
            return round < (complete ? rounds : maximumRounds) && !HasFailure();
        };
        for (int round = 0; continues(round); ++round)
            load(counts);
        EXPECT_GE(changes.turns(), minimumTurns);
        EXPECT_TRUE(isComplete(counts)) << "not all expected states were seen";
        return counts;
    }

    const DocumentVersions versions{GetParam()};
    // On tmpfs, one call of `read` may return parts of two contents.
    const TemporaryDirectory directory{fs::exists("/dev/shm") ? "/dev/shm" : fs::temp_directory_path()};

  private:
    static void note(LoadCounts& counts, std::size_t document, std::optional<std::size_t> version) {
        ASSERT_TRUE(version) << DocumentVersions::names[document] << " equals no version";
        counts.versions[document].insert(*version);
    }
};

TEST_P(LoaderRace, LoadsOneWholeVersionOfReplacedDocuments) {
    const LoadCounts counts = loadWhile(
        [&](std::size_t turn) {
            for (std::size_t document = 0; document < documents; ++document) {
                directory.write("next", versions.text(document, (turn + 1) % 2));
                fs::rename(directory / "next", fileOf(document));
            }
        },
        [](const LoadCounts& seen) { return seen.allSeen(); });
    EXPECT_EQ(counts.invalid, 0);
    EXPECT_EQ(counts.withoutPlan, 0);
}

TEST_P(LoaderRace, LoadsAFilmWhosePlanIsRemovedAndRestored) {
    const auto tool = [&](std::size_t /*turn*/) {
        fs::rename(fileOf(1), directory / "backup");
        fs::rename(directory / "backup", fileOf(1));
    };
    loadWhile(tool,
              [](const LoadCounts& seen) { return seen.withoutPlan > 0 && seen.versions[1].contains(0); });
}

// A document that is written in place may be read when it is incomplete, or when it is replaced between two
// parts of a read. That is an error, or is read again; it is not a film.
TEST_P(LoaderRace, RefusesDocumentsThatAreHalfWritten) {
    const auto tool = [&](std::size_t turn) {
        for (std::size_t document = 0; document < documents; ++document) {
            std::ofstream file(fileOf(document), std::ios::binary);
            std::string_view text = versions.text(document, (turn + 1) % 2);
            while (!text.empty()) {
                const std::string_view chunk = text.substr(0, 4000);
                file << chunk << std::flush;
                text.remove_prefix(chunk.size());
            }
        }
    };
    loadWhile(tool, [](const LoadCounts& seen) { return seen.allSeen() && seen.invalid > 0; });
}

// The length added to every text of the second version: documents that one read call returns, and larger
// ones.
INSTANTIATE_TEST_SUITE_P(AddedLength, LoaderRace, testing::Values(1, 37, 2000));

} // namespace
} // namespace kinovane::test
