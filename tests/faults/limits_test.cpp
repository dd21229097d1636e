// SPDX-License-Identifier: Apache-2.0

// The same without a stand-in for the system: what is left when it really has no more room, descriptors or
// threads to give.

#include "support/limits.hpp"

#include <csignal>
#include <filesystem>
#include <functional>
#include <iostream>
#include <set>
#include <span>
#include <string>
#include <vector>

#include <sys/stat.h>

#include <gtest/gtest.h>

#include <kinovane/handoff.hpp>
#include <kinovane/workspace.hpp>

#include "faults/outcome.hpp"
#include "faults/small_disk.hpp"
#include "faults/verification_text.hpp"
#include "support/child_counts.hpp"
#include "support/forked_process.hpp"
#include "support/ordinary_user.hpp"
#include "support/sample_film.hpp"

namespace kinovane::test {

namespace fs = std::filesystem;

namespace {

/// A handoff whose document is somewhat larger than `size`.
VistrelHandoff handoffOf(std::size_t size) {
    VistrelHandoff handoff;
    handoff.project.synopsis = std::string(size, 'k');
    return handoff;
}

/// Writes over an old manifest and says what came of it, and what lies in the directory then.
std::string writeOver(const fs::path& manifest, const VistrelHandoff& handoff) {
    const std::string content = encodeJSON(handoff, JSONFormat::pretty);
    const Outcome outcome = outcomeOf([&] { return VistrelHandoffBuilder::write(handoff, manifest); });
    std::string text = outcome.code ? outcome.code.message() : "written";
    const std::string found = contentOf(manifest);
    text += found == content ? ", the new manifest" : found == "old" ? ", the old manifest" : ", a ruin";
    for (const std::string& name : namesIn(manifest.parent_path()))
        text += name == manifest.filename() ? "" : ", " + name;
    return text;
}

TEST(Limits, AFileMayNotGrowSoLarge) {
    const VistrelHandoff handoff = handoffOf(20'000);
    const std::size_t size = encodeJSON(handoff, JSONFormat::pretty).size();
    for (const std::size_t limit : {std::size_t{0}, std::size_t{1}, size / 2, size - 1, size}) {
        SCOPED_TRACE(limit);
        const TemporaryDirectory directory;
        const fs::path manifest = directory.write("manifest.json", "old");
        EXPECT_EQ(inForkedProcess([&] {
                      static_cast<void>(std::signal(SIGXFSZ, SIG_IGN));
                      limitTo(RLIMIT_FSIZE, limit);
                      return writeOver(manifest, handoff);
                  }),
                  limit < size ? "File too large, the old manifest" : "written, the new manifest");
    }
}

TEST(Limits, AFullDisk) {
    struct Row {
        const char* sentence;
        const char* options;
        std::size_t size;
        bool readOnly;
        std::string expected;
    };
    const std::vector<Row> rows{
        {"room enough", "size=64k", 20'000, false, "written, the new manifest"},
        {"no room for the new manifest", "size=64k", 100'000, false,
         "No space left on device, the old manifest"},
        {"no room for another file", "size=64k,nr_inodes=2", 10, false,
         "No space left on device, the old manifest"},
        {"a disk that may not be written", "size=64k", 10, true, "Read-only file system, the old manifest"},
    };
    const std::string refused = "no disk of its own is allowed here";
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const TemporaryDirectory directory;
        const std::string outcome = inForkedProcess([&] {
            if (!mountSmallDisk(directory.path(), row.options))
                return refused;
            const fs::path manifest = directory.write("manifest.json", "old");
            if (row.readOnly)
                makeReadOnly(directory.path());
            return writeOver(manifest, handoffOf(row.size));
        });
        if (outcome == refused) {
            // Then a limit on the size of files, above, has to do.
            RecordProperty("full_disk", refused);
            std::cout << "[ FAULTS   ] " << row.sentence << ": " << refused << std::endl;
            return;
        }
        EXPECT_EQ(outcome, row.expected);
    }
}

/// Operations of a workspace, each of which gives one text when all is well.
struct OperationRow {
    const char* sentence;
    std::function<std::string()> operation;
    int enough; ///< So many descriptors certainly are.
};

class LimitedWorkspace : public testing::Test {
  protected:
    WorkspaceMaker maker;

    LimitedWorkspace() {
        maker.add("score", "score/theme.wav", "a theme");
        maker.add("shot-clip", "clips/by-name/s1.mp4", "a clip");
        maker.directory.write("film-project.json", smallestProject());
        maker.directory.write("kept/cut.mp4", "a cut");
        fs::create_directory_symlink(maker.directory / "kept", maker.directory / "absolute");
        maker.list("rough-cut", "absolute/cut.mp4").sha256 =
            VistrelHandoffBuilder::sha256(std::as_bytes(std::span(std::string_view("a cut"))));
    }

    std::vector<OperationRow> operations() const {
        return {
            {"loading",
             [this] { return FilmProjectLoader::load(maker.directory / "run.json").project.title; }, 2},
            {"building", [this] { return builtText(maker.snapshot, 1); }, 12},
            {"building with workers", [this] { return builtText(maker.snapshot, 3); }, 24},
            {"auditing with workers", [this] { return auditedText(maker.snapshot, 3); }, 24},
            {"writing",
             [this] {
                 return VistrelHandoffBuilder::write(VistrelHandoff(), maker.directory / "manifest.json");
             },
             4},
        };
    }
};

// Whatever there is not enough for is told as such, and when there is enough again all is well again.
TEST_F(LimitedWorkspace, FewDescriptors) {
    for (const OperationRow& row : operations()) {
        const std::string sound = row.operation();
        for (int spare = 0; spare <= row.enough; ++spare) {
            SCOPED_TRACE(std::string(row.sentence) + " with descriptors: " + std::to_string(spare));
            const std::string outcome = inForkedProcess([&] {
                const ProcessCounts before = countProcess();
                rlimit all{};
                ::getrlimit(RLIMIT_NOFILE, &all);
                leaveDescriptors(spare);
                std::set<std::string> others;
                bool worked = false;
                for (int time = 0; time < 10; ++time) {
                    const std::string text = outcomeOf(row.operation).text;
                    if (text == sound)
                        worked = true;
                    else if (text.find("Too many open files") == std::string::npos ||
                             text.find("unsafe") != std::string::npos)
                        others.insert(text);
                }
                limitTo(RLIMIT_NOFILE, all.rlim_cur);
                std::string told;
                for (const std::string& other : others)
                    told += other;
                if (spare == row.enough && !worked)
                    told += " that was not enough";
                if (row.operation() != sound)
                    told += " and it is broken now";
                return told + (settledCounts(before) == before ? "" : " and something was left");
            });
            EXPECT_EQ(outcome, "");
        }
    }
}

TEST_F(LimitedWorkspace, NoThreads) {
    maker.add("delivery-master", "delivery/film.mp4", std::string(std::size_t{5} << 20U, 'k'));
    ASSERT_EQ(::chmod(maker.directory.path().c_str(), 0755), 0);
    for (const unsigned workers : {1U, 3U}) {
        SCOPED_TRACE(workers);
        EXPECT_EQ(asOrdinaryUser([&] {
                      limitTo(RLIMIT_NPROC, 0);
                      return builtText(maker.snapshot, workers) + auditedText(maker.snapshot, workers);
                  }),
                  builtText(maker.snapshot, workers) + auditedText(maker.snapshot, workers));
    }
}

} // namespace

} // namespace kinovane::test
