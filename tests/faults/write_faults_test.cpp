// SPDX-License-Identifier: Apache-2.0

// Writing a manifest when system calls fail.

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <system_error>

#include <sys/stat.h>

#include <gtest/gtest.h>

#include <kinovane/handoff.hpp>

#include "faults/fault_sweep.hpp"
#include "support/temporary_directory.hpp"

namespace kinovane::test {

namespace fs = std::filesystem;

namespace {

constexpr mode_t privateMode = 0640;

VistrelHandoff handoffToWrite() {
    VistrelHandoff handoff;
    handoff.contractVersion = "quexrun/film-vistrel-handoff.v1";
    handoff.project.title = "A Lamp for the Late Ferry";
    return handoff;
}

class WriteFaults : public testing::Test {
  protected:
    const VistrelHandoff handoff = handoffToWrite();
    const std::string content = encodeJSON(handoff, JSONFormat::pretty);
    const TemporaryDirectory directory;
    const fs::path output = directory / "output";
    const fs::path manifest = output / "manifest.json"; ///< The file that is replaced, links resolved.
    std::optional<std::string> old = "the old manifest";

    /// Writes to `to` with a fault at each call.
    void sweep(
        const std::string& name, const fs::path& to, std::vector<Call> moreCalls,
        const std::function<void()>& prepareMore = [] {}) {
        std::vector<Call> calls{Call::open,    Call::create,   Call::write, Call::fsync, Call::close,
                                Call::fstatat, Call::renameat, Call::read,  Call::lstat};
        calls.insert(calls.end(), moreCalls.begin(), moreCalls.end());
        FaultSweep sweep{
            .name = name,
            .operation = [&] { return VistrelHandoffBuilder::write(handoff, to); },
            .expectedCalls = calls,
            .prepare =
                [&] {
                    prepare();
                    prepareMore();
                },
            .check = [&](const Fault& fault, const Outcome& outcome) { check(to, fault, outcome); }};
        // A full disk stays full, possibly after a partial write.
        for (const int error : {ENOSPC, EDQUOT, EFBIG, EIO})
            sweep.moreFaults.push_back({Call::write, 0, Fault::Kind::refused, error, forever});
        sweep.moreFaults.push_back({Call::write, 0, Fault::Kind::shortened, 0, forever});
        sweep.moreFaults.push_back({Call::fsync, 0, Fault::Kind::refused, EIO, forever});
        sweep.run();
    }

  private:
    void prepare() const {
        fs::remove_all(output);
        if (!old)
            return;
        directory.write("output/manifest.json", *old);
        ASSERT_EQ(::chmod(manifest.c_str(), privateMode), 0);
    }

    void check(const fs::path& to, const Fault& fault, const Outcome& outcome) const {
        const bool exists = fs::exists(manifest);
        const std::string found = exists ? contentOf(manifest) : "";
        const bool isNew = exists && found == content;
        const bool isOld = old ? exists && found == *old : !exists;
        EXPECT_TRUE(isNew || isOld) << "neither the old manifest nor the new one: " << found;
        if (exists && (old || isNew))
            checkMode(isNew);
        checkNames();
        if (outcome.kind == Outcome::Kind::result) {
            EXPECT_TRUE(isNew);
            EXPECT_FALSE(mustBeReported(fault)) << "the fault was not reported";
            return;
        }
        EXPECT_TRUE(isOld || mayFailAfterwards(fault)) << "replaced, and then reported as failed";
        EXPECT_EQ(outcome.kind, Outcome::Kind::systemError);
        EXPECT_EQ(outcome.code, std::error_code(fault.error, std::generic_category())) << outcome.text;
        checkNamed(to, outcome.text);
    }

    void checkMode(bool isNew) const {
        struct stat status{};
        ASSERT_EQ(::stat(manifest.c_str(), &status), 0);
        const mode_t mask = ::umask(0);
        ::umask(mask);
        EXPECT_EQ(status.st_mode & 07777U, old ? privateMode : 0666U & ~mask)
            << (isNew ? "of the new manifest" : "of the old manifest");
    }

    void checkNames() const {
        if (!fs::exists(output))
            return;
        for (const std::string& name : namesIn(output))
            EXPECT_EQ(name, "manifest.json") << "left behind";
    }

    /// The error names the manifest, a link that leads to it, or its parent directory.
    void checkNamed(const fs::path& to, const std::string& text) const {
        const std::set<fs::path> locations{to, to.parent_path(), directory / "second", manifest, output};
        EXPECT_TRUE(std::any_of(locations.begin(), locations.end(), [&](const fs::path& location) {
            return namesPath(text, location);
        })) << text;
    }

    /// Whether an error may be reported although the new manifest is in place: its directory could not be
    /// flushed, or the rename was done but returned an error.
    static bool mayFailAfterwards(const Fault& fault) {
        return (fault.call == Call::fsync && fault.index == 1) ||
               (fault.call == Call::renameat && fault.kind == Fault::Kind::reportedLate);
    }

    /// Whether the manifest may not be on disk after this fault. The second fsync is that of the directory,
    /// which some file systems do not support; the first close is that of the written file.
    static bool mustBeReported(const Fault& fault) {
        if (fault.harmless())
            return false;
        switch (fault.call) {
        case Call::write:
        case Call::renameat:
        case Call::fchmod:
            return true;
        case Call::fsync:
            return fault.index == 0 || (fault.error != EINVAL && fault.error != ENOTSUP);
        case Call::close:
            return fault.index == 0;
        default:
            return false;
        }
    }
};

TEST_F(WriteFaults, KeepAnExistingManifest) {
    sweep("writing over a manifest", manifest, {Call::fstat, Call::fchmod, Call::stat});
}

TEST_F(WriteFaults, LeaveAnEmptyDirectory) {
    old.reset();
    sweep("writing into an empty directory", manifest, {Call::stat}, [&] { fs::create_directory(output); });
}

TEST_F(WriteFaults, LeaveNoFileInANewDirectory) {
    old.reset();
    sweep("writing into a new directory", manifest, {Call::stat, Call::mkdir});
}

TEST_F(WriteFaults, KeepAManifestBehindLinks) {
    fs::create_symlink("output/manifest.json", directory / "second");
    fs::create_symlink(directory / "second", directory / "first");
    sweep("writing through links", directory / "first", {Call::fstat, Call::fchmod, Call::readlink});
}

TEST_F(WriteFaults, KeepAManifestAtARelativeLocation) {
    const fs::path before = fs::current_path();
    fs::current_path(directory.path());
    sweep("writing to a relative location", "output/manifest.json",
          {Call::fstat, Call::fchmod, Call::getcwd});
    fs::current_path(before);
}

// The temporary file is removed although the first write was interrupted.
TEST_F(WriteFaults, LeaveNoTemporaryFileOnAFullDiskAfterAnInterruption) {
    directory.write("output/manifest.json", *old);
    const FaultPlan plan({{Call::write, 0, Fault::Kind::refused, EINTR},
                          {Call::write, 1, Fault::Kind::shortened},
                          {Call::write, 2, Fault::Kind::refused, ENOSPC, forever}});
    const Outcome outcome = outcomeOf([&] { return VistrelHandoffBuilder::write(handoff, manifest); });
    EXPECT_EQ(outcome.code, std::errc::no_space_on_device);
    EXPECT_EQ(plan.counts()[static_cast<std::size_t>(Call::unlinkat)], 1U);
    EXPECT_EQ(contentOf(manifest), *old);
    EXPECT_EQ(namesIn(output), std::vector<std::string>{"manifest.json"});
}

} // namespace

} // namespace kinovane::test
