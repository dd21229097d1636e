// SPDX-License-Identifier: Apache-2.0

// Publishing in applications that have closed some of the standard descriptors and still use them.

#include "support/standard_descriptors.hpp"

#include <array>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <kinovane/handoff.hpp>
#include <kinovane/workspace.hpp>

#include "support/joining_thread.hpp"
#include "support/sample_film.hpp"

namespace kinovane::test {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t rounds = 50;

class StandardDescriptors : public testing::TestWithParam<ClosedDescriptors> {
  protected:
    const TemporaryDirectory directory;

    /// Runs the job many times; the first result that differs from `expected`, or "".
    static std::string differences(const std::string& expected, const std::function<std::string()>& job) {
        return withClosed(GetParam(), [&] {
            for (std::size_t round = 0; round < rounds; ++round)
                if (const std::string found = job(); found != expected)
                    return "in round " + std::to_string(round) + ": " + found;
            return std::string();
        });
    }
};

TEST_P(StandardDescriptors, DoNotDamageAManifest) {
    VistrelHandoff handoff;
    handoff.project.synopsis = std::string(200'000, 'k');
    const std::string content = encodeJSON(handoff, JSONFormat::pretty);
    const std::string digest = VistrelHandoffBuilder::sha256(std::as_bytes(std::span(content)));
    int count = 0;
    EXPECT_EQ(differences(digest,
                          [&] {
                              const std::string name = std::to_string(count++) + ".json";
                              return VistrelHandoffBuilder::write(handoff, directory / name);
                          }),
              "");
    // Read in this process: in the child, files that the test opens would get the closed descriptors.
    const std::vector<std::string> names = namesIn(directory.path());
    EXPECT_EQ(names.size(), rounds);
    for (const std::string& name : names)
        EXPECT_TRUE(contentOf(directory / name) == content) << name;
}

// While one thread reserves the standard descriptors, another one finds them in use, and may open its file
// once they are released.
TEST_P(StandardDescriptors, DoNotDamageManifestsOfSeveralThreads) {
    constexpr std::size_t threads = 4;
    VistrelHandoff handoff;
    handoff.project.synopsis = std::string(2'000, 'k');
    const std::string content = encodeJSON(handoff, JSONFormat::pretty);
    const std::string digest = VistrelHandoffBuilder::sha256(std::as_bytes(std::span(content)));
    EXPECT_EQ(withClosed(GetParam(),
                         [&] {
                             std::array<std::string, threads> differences;
                             std::vector<JoiningThread> writers;
                             for (std::size_t number = 0; number < threads; ++number)
                                 writers.emplace_back([&, number] {
                                     const fs::path manifest = directory / std::to_string(number);
                                     for (std::size_t round = 0; round < 2 * rounds; ++round)
                                         if (VistrelHandoffBuilder::write(handoff, manifest) != digest)
                                             differences[number] = "another digest";
                                 });
                             writers.clear();
                             std::string all;
                             for (const std::string& difference : differences)
                                 all += difference;
                             return all;
                         }),
              "");
    EXPECT_EQ(namesIn(directory.path()), (std::vector<std::string>{"0", "1", "2", "3"}));
    for (const std::string& name : namesIn(directory.path()))
        EXPECT_TRUE(contentOf(directory / name) == content) << name;
}

TEST_P(StandardDescriptors, DoNotDamageTheDigestOfAFile) {
    const fs::path file = directory.write("file", std::string(1'200'000, 'k'));
    const std::string digest = VistrelHandoffBuilder::sha256(file);
    EXPECT_EQ(differences(digest, [&] { return VistrelHandoffBuilder::sha256(file); }), "");
}

TEST_P(StandardDescriptors, DoNotDamageLoadingAndVerifying) {
    WorkspaceMaker maker;
    maker.directory.write("film-project.json", smallestProject());
    const std::string digest = maker.add("shot-clip", "clips/s1.mp4", std::string(300'000, 'k')).sha256;
    fs::create_directory_symlink(maker.directory / "clips", maker.directory / "linked");
    maker.list("poster", "linked/s1.mp4").sha256 = digest;
    EXPECT_EQ(differences("p: 2",
                          [&] {
                              const std::string id =
                                  FilmProjectLoader::load(maker.directory / "run.json").project.projectId;
                              return id + ": " +
                                     std::to_string(
                                         VistrelHandoffBuilder::build(maker.snapshot, "film").assets.size());
                          }),
              "");
}

INSTANTIATE_TEST_SUITE_P(Closed, StandardDescriptors, testing::Range(0, 8),
                         [](const auto& row) { return nameOf(row.param); });

} // namespace

} // namespace kinovane::test
