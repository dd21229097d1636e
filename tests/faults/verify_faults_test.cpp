// SPDX-License-Identifier: Apache-2.0

// Verifying artifacts when system calls fail.

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <span>
#include <sstream>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include <fcntl.h>

#include <gtest/gtest.h>

#include <kinovane/handoff.hpp>

#include "common/files/descriptor.hpp"
#include "faults/fault_plan.hpp"
#include "faults/fault_sweep.hpp"
#include "faults/verification_text.hpp"
#include "support/sample_film.hpp"

namespace kinovane::test {

namespace fs = std::filesystem;

namespace {

const std::vector<Call> resolutionCalls{Call::open, Call::openat, Call::openat2, Call::fstatat,
                                        Call::read, Call::fstat,  Call::close};

/// Of a film without links in its paths.
const std::vector<Call> directCalls{Call::open, Call::openat2, Call::read, Call::fstat, Call::close};

/// When a directory outside the project may not be searched, the path counts as one that leads out.
const std::string leadsOut = "The handoff contains an unsafe artifact path: absolute/cut.mp4";

/// Every artifact is missing when the project's directory does not exist.
bool meansNoDirectory(const Fault& fault) {
    return fault.call == Call::open &&
           (fault.error == ENOENT || fault.error == ENOTDIR || fault.error == ELOOP);
}

class VerifyFaults : public testing::Test {
  protected:
    WorkspaceMaker maker;

    /// Artifacts in several directories; the paths of two of them lead through links.
    VerifyFaults() {
        const fs::path& root = maker.directory.path();
        maker.add("shot-keyframe", "frames/s1.png", "a frame");
        maker.add("shot-clip", "clips/by-name/s1.mp4", "a clip");
        maker.add("score", "score/theme.wav", "a theme");
        maker.directory.write("media/poster.png", "a poster");
        maker.directory.write("media/cut.mp4", "a cut");
        fs::create_symlink("media/poster.png", root / "poster.png");
        fs::create_directory_symlink(root / "media", root / "absolute");
        list("poster", "poster.png", "a poster");
        list("rough-cut", "absolute/cut.mp4", "a cut");
    }

    void list(std::string_view kind, std::string_view path, std::string_view content) {
        maker.list(kind, path).sha256 = VistrelHandoffBuilder::sha256(std::as_bytes(std::span(content)));
    }

    bool namesAnArtifactOrTheRoot(const std::string& text) const {
        const auto& artifacts = maker.snapshot.project.artifacts;
        return namesPath(text, maker.directory.path()) || namesPath(text, "/") ||
               std::any_of(artifacts.begin(), artifacts.end(), [&](const FilmArtifact& artifact) {
                   return text.find(artifact.path) != std::string::npos;
               });
    }

    /// A fault of the system is reported as such: the artifact is not reported as missing, unsafe or damaged.
    void checkError(const Fault& fault, const Outcome& outcome) const {
        if (outcome.kind == Outcome::Kind::result)
            return;
        if (fault.error == EACCES && outcome.kind == Outcome::Kind::handoffError) {
            EXPECT_EQ(outcome.text, leadsOut);
            return;
        }
        if (meansNoDirectory(fault) && outcome.kind == Outcome::Kind::handoffError) {
            EXPECT_TRUE(outcome.text.starts_with("The handoff artifact is missing: ")) << outcome.text;
            return;
        }
        EXPECT_EQ(outcome.kind, Outcome::Kind::systemError) << outcome.text;
        if (outcome.kind == Outcome::Kind::systemError)
            EXPECT_EQ(outcome.code.value(), fault.error) << outcome.text;
        EXPECT_TRUE(namesAnArtifactOrTheRoot(outcome.text)) << outcome.text;
    }
};

TEST_F(VerifyFaults, AreReportedByABuild) {
    for (const unsigned workers : {1U, 3U}) {
        std::vector<Call> calls = resolutionCalls;
        calls.push_back(Call::readlinkat);
        if (workers > 1)
            calls.push_back(Call::pthreadCreate);
        FaultSweep{.name = "building with workers: " + std::to_string(workers),
                   .operation = [&] { return builtText(maker.snapshot, workers); },
                   .expectedCalls = calls,
                   .check = [&](const Fault& fault, const Outcome& outcome) { checkError(fault, outcome); },
                   .repeatable = workers == 1,
                   .moreFaults = {{Call::openat2, 0, Fault::Kind::refused, ENOSYS, forever},
                                  {Call::read, 0, Fault::Kind::shortened, 0, forever},
                                  {Call::read, 0, Fault::Kind::refused, EIO, forever},
                                  {Call::openat, 0, Fault::Kind::refused, EMFILE, forever}}}
            .run();
    }
}

/// The lines of an audit with a fault differ from those without only where they report the fault.
void checkLines(const Fault& fault, const std::string& text, const std::string& sound) {
    std::istringstream lines(text);
    std::istringstream soundLines(sound);
    const std::string why = " (" + std::generic_category().message(fault.error) + ")";
    std::size_t different = 0;
    for (std::string line, soundLine; std::getline(soundLines, soundLine);) {
        ASSERT_TRUE(std::getline(lines, line));
        if (line == soundLine)
            continue;
        ++different;
        if (fault.error == EACCES && line == leadsOut)
            continue;
        if (meansNoDirectory(fault) && line.starts_with("The handoff artifact is missing: "))
            continue;
        EXPECT_TRUE(line.starts_with("The handoff artifact could not be read: ") && line.ends_with(why))
            << line;
    }
    if (!meansNoDirectory(fault))
        EXPECT_LE(different, fault.times);
}

TEST_F(VerifyFaults, AreReportedByAnAudit) {
    for (const unsigned workers : {1U, 3U}) {
        const std::string sound = auditedText(maker.snapshot, workers);
        FaultSweep{.name = "auditing with workers: " + std::to_string(workers),
                   .operation = [&] { return auditedText(maker.snapshot, workers); },
                   .expectedCalls = resolutionCalls,
                   .check =
                       [&](const Fault& fault, const Outcome& outcome) {
                           if (outcome.kind == Outcome::Kind::result)
                               checkLines(fault, outcome.text, sound);
                           else
                               checkError(fault, outcome);
                       },
                   .oneResult = false,
                   .repeatable = workers == 1,
                   .moreFaults = {{Call::read, 0, Fault::Kind::refused, EIO, forever}}}
            .run();
    }
}

TEST_F(VerifyFaults, NeverHideADamagedArtifact) {
    maker.directory.write("media/cut.mp4", "a scratch");
    for (const unsigned workers : {1U, 3U})
        FaultSweep{.name = "building with a damaged file, workers: " + std::to_string(workers),
                   .operation = [&] { return builtText(maker.snapshot, workers); },
                   .expectedCalls = resolutionCalls,
                   .check =
                       [&](const Fault& fault, const Outcome& outcome) {
                           EXPECT_NE(outcome.kind, Outcome::Kind::result);
                           if (outcome.text.find("Artifact hash mismatch for absolute/cut.mp4") ==
                               std::string::npos)
                               checkError(fault, outcome);
                       },
                   .repeatable = workers == 1}
            .run();
}

// Older kernels do not have openat2, and a sandbox may forbid it.
TEST_F(VerifyFaults, NeverHideAMagicLinkWithoutOpenat2) {
    struct Row {
        const char* sentence;
        fs::path target; ///< Of a link; the rest of the path is "poster.png".
        std::string expected;
    };
    const std::string directory = maker.directory.path().native() + "/media";
    const Descriptor open(::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const std::string unsafe = "The handoff contains an unsafe artifact path: link/poster.png\n";
    const std::string sound = "The handoff artifact is sound: link/poster.png\n";
    const Row rows[] = {
        {"an open directory", "/proc/self/fd/" + std::to_string(open.get()), unsafe},
        {"the root directory", "/proc/self/root" + directory, unsafe},
        {"a namespace, which is no directory", "/proc/self/ns/mnt", unsafe},
        {"an ordinary link in procfs", "/proc/self/../.." + directory, sound},
        {"an ordinary link", directory, sound},
    };
    for (const Row& row : rows)
        for (const int error : {0, ENOSYS, EPERM}) {
            SCOPED_TRACE(testing::Message() << row.sentence << ", error " << error);
            maker.snapshot.project.artifacts.clear();
            list("poster", "link/poster.png", "a poster");
            fs::remove(maker.directory / "link");
            fs::create_symlink(row.target, maker.directory / "link");
            const FaultPlan plan(
                error == 0 ? std::vector<Fault>()
                           : std::vector<Fault>{{Call::openat2, 0, Fault::Kind::refused, error, forever}});
            EXPECT_EQ(auditedText(maker.snapshot, 1), row.expected);
        }
}

TEST_F(VerifyFaults, AreReportedForLinksInProcfs) {
    maker.snapshot.project.artifacts.clear();
    fs::create_symlink("/proc/self/../.." + maker.directory.path().native() + "/media",
                       maker.directory / "link");
    list("rough-cut", "link/cut.mp4", "a cut");
    std::vector<Call> calls = resolutionCalls;
    calls.insert(calls.end(), {Call::readlinkat, Call::fstatfs});
    const std::string linkLeadsOut = "The handoff contains an unsafe artifact path: link/cut.mp4";
    FaultSweep{.name = "building through links in procfs",
               .operation = [&] { return builtText(maker.snapshot, 1); },
               .expectedCalls = calls,
               .check =
                   [&](const Fault& fault, const Outcome& outcome) {
                       // The system returns ELOOP for a magic link.
                       const bool isMagic = fault.call == Call::openat2 && fault.error == ELOOP;
                       if ((fault.error != EACCES && !isMagic) || outcome.text != linkLeadsOut)
                           checkError(fault, outcome);
                   }}
        .run();
}

// Large enough to be read on a second thread.
TEST_F(VerifyFaults, AreReportedWhenReadingAhead) {
    maker.snapshot.project.artifacts.clear();
    maker.add("delivery-master", "delivery/film.mp4", std::string(std::size_t{5} << 20U, 'k'));
    std::vector<Call> calls = directCalls;
    calls.push_back(Call::pthreadCreate);
    FaultSweep{.name = "building with reading ahead",
               .operation = [&] { return builtText(maker.snapshot, 1); },
               .expectedCalls = calls,
               .check = [&](const Fault& fault, const Outcome& outcome) { checkError(fault, outcome); }}
        .run();
}

TEST_F(VerifyFaults, AreReportedByTheDigestOfAFile) {
    const fs::path file = maker.directory / "score/theme.wav";
    FaultSweep{.name = "the digest of a file",
               .operation = [&] { return VistrelHandoffBuilder::sha256(file); },
               .expectedCalls = {Call::open, Call::fstat, Call::read, Call::close},
               .check = [&](const Fault& fault, const Outcome& outcome) { checkError(fault, outcome); },
               .moreFaults = {{Call::read, 0, Fault::Kind::shortened, 0, forever}}}
        .run();
}

} // namespace

} // namespace kinovane::test
