// SPDX-License-Identifier: Apache-2.0

// Several write one manifest at the same time, and somebody reads it meanwhile.

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
#include "support/temporary_directory.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t versions = 6;
constexpr std::size_t writings = 100; ///< Of each writer.
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
            for (std::size_t writing = 0; writing < writings; ++writing)
                EXPECT_TRUE(digests_.contains(VistrelHandoffBuilder::write(manifest, target)))
                    << "the digest of no version was returned";
        } catch (const fs::filesystem_error& error) {
            ADD_FAILURE() << error.what();
        }
    }

    /// Reads until `isOver`. Every reading has to be a version, and they have to change.
    void readUntil(const std::function<bool()>& isOver) const {
        std::string last;
        std::size_t changes = 0;
        while (!isOver() && !HasFailure()) {
            const std::string text = contentOf(target);
            EXPECT_TRUE(texts_.contains(text)) << "read " << text.size() << " bytes of no version";
            EXPECT_TRUE(digests_.contains(VistrelHandoffBuilder::sha256(target)));
            changes += text == last ? 0U : 1U;
            last = text;
        }
        EXPECT_GT(changes, minimumChanges);
    }

    void expectOneManifestAlone() const {
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

TEST_F(WritersRace, Threads) {
    std::atomic<std::size_t> writing = versions;
    std::vector<std::jthread> writers;
    for (std::size_t version = 0; version < versions; ++version)
        writers.emplace_back([&, version] {
            write(version);
            --writing;
        });
    readUntil([&] { return writing == 0; });
    writers.clear();
    expectOneManifestAlone();
}

TEST_F(WritersRace, Processes) {
    std::deque<WriterProcess> writers;
    for (std::size_t version = 0; version < versions; ++version)
        writers.emplace_back(target, writings, std::vector{version});
    std::atomic<bool> over = false;
    std::jthread waiting([&] {
        for (WriterProcess& writer : writers)
            EXPECT_EQ(writer.wait(), 0);
        over = true;
    });
    readUntil([&] { return over.load(); });
    waiting.join();
    expectOneManifestAlone();
}

} // namespace
} // namespace kinovane::test
