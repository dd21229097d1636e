// SPDX-License-Identifier: Apache-2.0

// Several threads or processes write the same manifest at the same time, while another thread reads it.

#include <atomic>
#include <deque>
#include <filesystem>
#include <functional>
#include <set>
#include <span>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>

#include "races/manifest_versions.hpp"
#include "races/writer_process.hpp"
#include "support/joining_thread.hpp"
#include "support/temporary_directory.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t versions = 6;
constexpr std::size_t writesPerWriter = 100;
constexpr std::size_t minimumChanges = 5;

class WritersRace : public testing::Test {
  protected:
    WritersRace() {
        for (std::size_t version = 0; version < versions; ++version) {
            const std::string text = manifestText(version);
            texts_.insert(text);
            digests_.insert(VistrelHandoffBuilder::sha256(std::as_bytes(std::span(text))));
        }
        VistrelHandoffBuilder::write(manifestVersion(0), target);
    }

    /// Writes a version many times.
    void write(std::size_t version) const {
        const VistrelHandoff manifest = manifestVersion(version);
        try {
            for (std::size_t count = 0; count < writesPerWriter; ++count)
                EXPECT_TRUE(digests_.contains(VistrelHandoffBuilder::write(manifest, target)))
                    << "the digest of no version was returned";
        } catch (const fs::filesystem_error& error) {
            ADD_FAILURE() << error.what();
        }
    }

    /// Reads until `isDone`. Every read has to give a whole version, and the version has to change.
    void readUntil(const std::function<bool()>& isDone) const {
        std::string last;
        std::size_t changes = 0;
        while (!isDone() && !HasFailure()) {
            const std::string text = contentOf(target);
            EXPECT_TRUE(texts_.contains(text)) << "read " << text.size() << " bytes of no version";
            EXPECT_TRUE(digests_.contains(VistrelHandoffBuilder::sha256(target)));
            changes += text == last ? 0U : 1U;
            last = text;
        }
        EXPECT_GT(changes, minimumChanges);
    }

    void expectOnlyTheManifest() const {
        EXPECT_TRUE(texts_.contains(contentOf(target)));
        EXPECT_THAT(namesIn(directory_.path()), testing::ElementsAre("manifest.json"));
    }

  private:
    TemporaryDirectory directory_;
    std::set<std::string> texts_;
    std::set<std::string> digests_;

  protected:
    const fs::path target = directory_ / "manifest.json";
};

TEST_F(WritersRace, OfThreadsLeavesAWholeManifest) {
    std::atomic<std::size_t> running = versions;
    std::vector<JoiningThread> writers;
    for (std::size_t version = 0; version < versions; ++version)
        writers.emplace_back([&, version] {
            write(version);
            --running;
        });
    readUntil([&] { return running == 0; });
    writers.clear();
    expectOnlyTheManifest();
}

TEST_F(WritersRace, OfProcessesLeavesAWholeManifest) {
    std::deque<WriterProcess> writers;
    for (std::size_t version = 0; version < versions; ++version)
        writers.emplace_back(target, writesPerWriter, std::vector{version});
    std::atomic<bool> allExited = false;
    JoiningThread waiting([&] {
        for (WriterProcess& writer : writers)
            EXPECT_EQ(writer.wait(), 0);
        allExited = true;
    });
    readUntil([&] { return allExited.load(); });
    waiting.join();
    expectOnlyTheManifest();
}

} // namespace
} // namespace kinovane::test
