#include <sys/stat.h>

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

FilmWorkspaceSnapshot snapshotOf(const LayoutPlace& place, const std::string& path) {
    FilmWorkspaceSnapshot snapshot;
    snapshot.root = place.root;
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

TEST(Containment, EveryLayout) {
    ASSERT_GE(containmentLayouts().size(), 90U);
    for (const Layout& layout : containmentLayouts()) {
        SCOPED_TRACE(layout.sentence);
        LayoutPlace place;
        layout.make(place);
        const FilmWorkspaceSnapshot snapshot = snapshotOf(place, layout.path);
        const ProcessCounts before = countProcess();
        {
            const OrdinaryUser user;
            EXPECT_EQ(outcomeOfBuild(snapshot, layout.path), layout.expected);
            EXPECT_EQ(outcomeOfAudit(snapshot, layout.path), layout.expected);
            EXPECT_EQ(digestOfFile(place.root / layout.path), layout.digest);
        }
        EXPECT_EQ(settledCounts(before), before) << "nothing stays open";
    }
}

TEST(Containment, TheTableHasEveryOutcome) {
    for (const Kind kind : {Kind::accepted, Kind::unsafe, Kind::missing, Kind::failure})
        EXPECT_TRUE(std::any_of(containmentLayouts().begin(), containmentLayouts().end(),
                                [&](const Layout& layout) { return layout.expected.kind == kind; }));
}

TEST(Containment, TheProjectMayBeGivenRelativeToTheWorkingDirectory) {
    LayoutPlace place;
    const auto here = std::filesystem::current_path();
    std::filesystem::current_path(place.area.path());
    place.root = "film";
    EXPECT_EQ(outcomeOfBuild(snapshotOf(place, "a.png"), "a.png").kind, Kind::accepted);
    place.root = "film/sub/..";
    place.directory("film/sub");
    EXPECT_EQ(outcomeOfBuild(snapshotOf(place, "a.png"), "a.png").kind, Kind::accepted);
    std::filesystem::current_path(here);
}

} // namespace
} // namespace kinovane::test
