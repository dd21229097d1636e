// SPDX-License-Identifier: Apache-2.0

#include <climits>
#include <string>

#include <gtest/gtest.h>

#include <kinovane/handoff.hpp>

#include "handoff/containment_layouts.hpp"
#include "handoff/ordinary_user.hpp"
#include "support/child_counts.hpp"
#include "support/sample_film.hpp"

namespace kinovane::test {

void PrintTo(const LayoutOutcome& outcome, std::ostream* stream) {
    static constexpr const char* names[] = {"accepted", "unsafe", "missing", "failure: "};
    *stream << names[static_cast<int>(outcome.kind)];
    if (outcome.kind == LayoutOutcome::Kind::failure)
        *stream << make_error_code(outcome.code).message();
}

void PrintTo(const LayoutDigest& digest, std::ostream* stream) {
    *stream << (digest.text.empty() ? "refused: " + make_error_code(digest.code).message() : digest.text);
}

namespace {

using Kind = LayoutOutcome::Kind;

FilmWorkspaceSnapshot snapshotOf(const LayoutFiles& files, const std::string& path) {
    FilmWorkspaceSnapshot snapshot;
    snapshot.root = files.root;
    snapshot.project.artifacts = {{7, "image/png", "c", "poster", path, std::string(layoutDigest), "s"}};
    snapshot.productionPlan.emplace();
    return snapshot;
}

LayoutOutcome outcomeOfBuild(const FilmWorkspaceSnapshot& snapshot, const std::string& path) {
    try {
        const VistrelHandoff handoff = VistrelHandoffBuilder::build(snapshot, "/r");
        EXPECT_EQ(handoff.assets.at(0).relativePath, path);
        return {Kind::accepted, {}};
    } catch (const VistrelHandoffError& error) {
        if (error == VistrelHandoffError(VistrelHandoffError::unsafeArtifactPath{path}))
            return {Kind::unsafe, {}};
        if (error == VistrelHandoffError(VistrelHandoffError::missingArtifact{path}))
            return {Kind::missing, {}};
        ADD_FAILURE() << error.what();
    } catch (const std::filesystem::filesystem_error& error) {
        EXPECT_EQ(error.path1(), snapshot.root / path);
        return {Kind::failure, static_cast<std::errc>(error.code().default_error_condition().value())};
    }
    return {};
}

LayoutOutcome outcomeOfAudit(const FilmWorkspaceSnapshot& snapshot, const std::string& path) {
    const ArtifactOutcome outcome = VistrelHandoffBuilder::audit(snapshot).at(0);
    if (outcome.refusal == VistrelHandoffError(VistrelHandoffError::unsafeArtifactPath{path}))
        return {Kind::unsafe, {}};
    if (outcome.refusal == VistrelHandoffError(VistrelHandoffError::missingArtifact{path}))
        return {Kind::missing, {}};
    if (outcome.failure)
        return {Kind::failure, static_cast<std::errc>(outcome.failure.default_error_condition().value())};
    EXPECT_TRUE(outcome.sound()) << outcome.description();
    return {Kind::accepted, {}};
}

LayoutDigest digestOfFile(const std::filesystem::path& file) {
    try {
        return {VistrelHandoffBuilder::sha256(file), {}};
    } catch (const std::filesystem::filesystem_error& error) {
        EXPECT_EQ(error.path1(), file);
        return {"", static_cast<std::errc>(error.code().default_error_condition().value())};
    }
}

TEST(Containment, IsDecidedForEveryLayout) {
    ASSERT_GE(containmentLayouts().size(), 90U);
    const bool hasProcfs = std::filesystem::exists("/proc/self");
    for (const Layout& layout : containmentLayouts()) {
        if (layout.procfs && !hasProcfs)
            continue;
        SCOPED_TRACE(layout.sentence);
        LayoutFiles files;
        layout.make(files);
        const FilmWorkspaceSnapshot snapshot = snapshotOf(files, layout.path);
        const ProcessCounts before = countProcess();
        {
            const OrdinaryUser user;
            EXPECT_EQ(outcomeOfBuild(snapshot, layout.path), layout.expected);
            EXPECT_EQ(outcomeOfAudit(snapshot, layout.path), layout.expected);
            EXPECT_EQ(digestOfFile(files.root / layout.path), layout.digest);
        }
        EXPECT_EQ(settledCounts(before), before) << "a descriptor was leaked";
    }
}

TEST(Containment, HasLayoutsOfEveryOutcome) {
    for (const Kind kind : {Kind::accepted, Kind::unsafe, Kind::missing, Kind::failure})
        EXPECT_TRUE(std::any_of(containmentLayouts().begin(), containmentLayouts().end(),
                                [&](const Layout& layout) { return layout.expected.kind == kind; }));
}

// The limit applies to the absolute path: the project's directory, a slash, and the artifact's path.
TEST(Containment, TreatsAPathThatIsTooLongAsMissing) {
    LayoutFiles files;
    files.link("film/absolute", files.area / "film");
    files.link("film/out", "../outside");
    struct Row {
        const char* sentence;
        std::filesystem::path root;
        std::string beginning; ///< Of the path; slashes and "a.png" follow.
        Kind shorter;
        Kind longer; ///< One byte too long.
    };
    const Row rows[] = {
        {"a plain path", files.area / "film", ".", Kind::accepted, Kind::missing},
        {"a path through an absolute link", files.area / "film", "absolute", Kind::accepted, Kind::missing},
        {"a path that leads out", files.area / "film", "out", Kind::unsafe, Kind::unsafe},
        {"a root with a slash at its end", files.area / "film/", ".", Kind::accepted, Kind::missing},
        {"a root with dots", files.area / "film/./.", "absolute", Kind::accepted, Kind::missing},
    };
    for (const Row& row : rows)
        for (const bool tooLong : {false, true}) {
            SCOPED_TRACE(testing::Message() << row.sentence << (tooLong ? ", too long" : ", long"));
            files.root = row.root;
            std::string path = row.beginning + "/a.png";
            const std::size_t length = (row.root / path).native().size();
            path.insert(row.beginning.size(), PATH_MAX - 1 - length + (tooLong ? 1 : 0), '/');
            const FilmWorkspaceSnapshot snapshot = snapshotOf(files, path);
            const LayoutOutcome expected{tooLong ? row.longer : row.shorter, {}};
            EXPECT_EQ(outcomeOfBuild(snapshot, path), expected);
            EXPECT_EQ(outcomeOfAudit(snapshot, path), expected);
            EXPECT_EQ(digestOfFile(row.root / path).code,
                      tooLong ? std::errc::filename_too_long : std::errc());
        }
}

TEST(Containment, TreatsAllFilesAsMissingWhenTheProjectsPathIsTooLong) {
    LayoutFiles files;
    files.root = files.area.path().native() + std::string(PATH_MAX, '/') + "film";
    EXPECT_EQ(outcomeOfBuild(snapshotOf(files, "a.png"), "a.png").kind, Kind::missing);
    EXPECT_EQ(outcomeOfAudit(snapshotOf(files, "a.png"), "a.png").kind, Kind::missing);
}

TEST(Containment, AcceptsAProjectRelativeToTheWorkingDirectory) {
    LayoutFiles files;
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(files.area.path());
    files.root = "film";
    EXPECT_EQ(outcomeOfBuild(snapshotOf(files, "a.png"), "a.png").kind, Kind::accepted);
    files.root = "film/sub/..";
    files.directory("film/sub");
    EXPECT_EQ(outcomeOfBuild(snapshotOf(files, "a.png"), "a.png").kind, Kind::accepted);
    std::filesystem::current_path(before);
}

} // namespace
} // namespace kinovane::test
