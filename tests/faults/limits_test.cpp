// SPDX-License-Identifier: Apache-2.0

// Resource limits of the operating system, without interposition: no more disk space, descriptors or threads.

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

/// A handoff whose document is a little larger than `size`.
VistrelHandoff handoffOf(std::size_t size) {
    VistrelHandoff handoff;
    handoff.project.synopsis = std::string(size, 'k');
    return handoff;
}

/// Replaces an old manifest; returns the result, which manifest exists, and all other files in the directory.
std::string replaceManifest(const fs::path& manifest, const VistrelHandoff& handoff) {
    const std::string content = encodeJSON(handoff, JSONFormat::pretty);
    const Outcome outcome = outcomeOf([&] { return VistrelHandoffBuilder::write(handoff, manifest); });
    std::string text = outcome.code ? outcome.code.message() : "written";
    const std::string found = contentOf(manifest);
    text += found == content ? ", the new manifest"
            : found == "old" ? ", the old manifest"
                             : ", a damaged manifest";
    for (const std::string& name : namesIn(manifest.parent_path()))
        text += name == manifest.filename() ? "" : ", " + name;
    return text;
}

TEST(FileSizeLimit, KeepsTheOldManifest) {
    const VistrelHandoff handoff = handoffOf(20'000);
    const std::size_t size = encodeJSON(handoff, JSONFormat::pretty).size();
    for (const std::size_t limit : {std::size_t{0}, std::size_t{1}, size / 2, size - 1, size}) {
        SCOPED_TRACE(limit);
        const TemporaryDirectory directory;
        const fs::path manifest = directory.write("manifest.json", "old");
        EXPECT_EQ(inForkedProcess([&] {
                      static_cast<void>(std::signal(SIGXFSZ, SIG_IGN));
                      limitTo(RLIMIT_FSIZE, limit);
                      return replaceManifest(manifest, handoff);
                  }),
                  limit < size ? "File too large, the old manifest" : "written, the new manifest");
    }
}

TEST(FullDisk, KeepsTheOldManifest) {
    struct Row {
        const char* sentence;
        const char* options;
        std::size_t size;
        bool readOnly;
        std::string expected;
    };
    const std::vector<Row> rows{
        {"enough space", "size=64k", 20'000, false, "written, the new manifest"},
        {"no space for the new manifest", "size=64k", 100'000, false,
         "No space left on device, the old manifest"},
        {"no inode for another file", "size=64k,nr_inodes=2", 10, false,
         "No space left on device, the old manifest"},
        {"a read-only file system", "size=64k", 10, true, "Read-only file system, the old manifest"},
    };
    const std::string refused = "mounting a file system is not permitted";
    for (const Row& row : rows) {
        SCOPED_TRACE(row.sentence);
        const TemporaryDirectory directory;
        const std::string outcome = inForkedProcess([&] {
            if (!mountSmallDisk(directory.path(), row.options))
                return refused;
            const fs::path manifest = directory.write("manifest.json", "old");
            if (row.readOnly)
                makeReadOnly(directory.path());
            return replaceManifest(manifest, handoffOf(row.size));
        });
        if (outcome == refused) {
            // The test with a file size limit above covers the same code.
            RecordProperty("full_disk", refused);
            std::cout << "[ FAULTS   ] " << row.sentence << ": " << refused << std::endl;
            return;
        }
        EXPECT_EQ(outcome, row.expected);
    }
}

/// An operation on a workspace that returns the same text whenever it succeeds.
struct OperationRow {
    const char* sentence;
    std::function<std::string()> operation;
    int sufficient; ///< A number of descriptors with which it succeeds.
};

class LimitedWorkspace : public testing::Test {
  protected:
    WorkspaceMaker maker;

    LimitedWorkspace() {
        maker.add("score", "score/theme.wav", "a theme");
        maker.add("shot-clip", "clips/by-name/s1.mp4", "a clip");
        maker.directory.write("film-project.json", smallestProject());
        maker.directory.write("cuts/cut.mp4", "a cut");
        fs::create_directory_symlink(maker.directory / "cuts", maker.directory / "absolute");
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

// A lack of descriptors is reported as such, and the operation succeeds again once there are enough.
TEST_F(LimitedWorkspace, ReportsALackOfDescriptors) {
    for (const OperationRow& row : operations()) {
        const std::string expected = row.operation();
        for (int spare = 0; spare <= row.sufficient; ++spare) {
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
                    if (text == expected)
                        worked = true;
                    else if (text.find("Too many open files") == std::string::npos ||
                             text.find("unsafe") != std::string::npos)
                        others.insert(text);
                }
                limitTo(RLIMIT_NOFILE, all.rlim_cur);
                std::string problems;
                for (const std::string& other : others)
                    problems += other;
                if (spare == row.sufficient && !worked)
                    problems += " never succeeded";
                if (row.operation() != expected)
                    problems += " fails with enough descriptors";
                return problems +
                       (settledCounts(before) == before ? "" : " leaked a descriptor, thread or child");
            });
            EXPECT_EQ(outcome, "");
        }
    }
}

TEST_F(LimitedWorkspace, IsVerifiedWithoutMoreThreads) {
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
