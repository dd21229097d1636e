// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <array>
#include <functional>
#include <limits>
#include <ostream>
#include <random>
#include <set>

#include <gmock/gmock.h>

#include <kinovane/handoff.hpp>
#include <kinovane/preflight.hpp>

#include "support/sample_film.hpp"

namespace kinovane::test {
namespace {

using Code = PreflightCode;

/// A finding, without the records that it names in full.
struct Found {
    Code code;
    bool blocking;
    std::string path;   ///< Of the artifact; empty when there is none.
    std::string shotId; ///< Empty when there is none.
    std::string text;

    bool operator==(const Found&) const = default;
};

void PrintTo(const Found& found, std::ostream* out) {
    *out << static_cast<int>(found.code) << (found.blocking ? " blocking " : " warning ") << found.path << " "
         << found.shotId << ": " << found.text;
}

std::vector<Found> preflightOf(const FilmWorkspaceSnapshot& snapshot, const std::string& projectRoot = "/r") {
    std::vector<Found> result;
    for (const PreflightFinding& finding : VistrelHandoffBuilder::preflight(snapshot, projectRoot))
        result.push_back({finding.code, finding.severity == PreflightSeverity::blocking,
                          finding.artifact ? finding.artifact->path : "", finding.shotId.value_or(""),
                          finding.text});
    return result;
}

/// A workspace without any finding.
class CompleteWorkspace : public WorkspaceMaker {
  public:
    CompleteWorkspace() {
        add("shot-keyframe", "frames/s1.png", "frame");
        add("shot-clip", "clips/s1.mp4", "clip");
        snapshot.project.proof = {true, true, true, true, true, true, true, true, true, true};
        snapshot.project.approvals["plan"].status = "approved";
        snapshot.productionPlan->projectId = snapshot.project.projectId;
    }
};

constexpr double tooLong = 9.3e15;
const std::string notUTF8 = "\xFF";

struct Row {
    std::string_view sentence;
    std::function<void(FilmWorkspaceSnapshot& snapshot, FilmProductionPlan& plan)> prepare;
    std::vector<Found> expected;
};

const std::vector<Row>& rows() {
    static const std::vector<Row> all{
        {"a complete workspace has no finding", [](auto&, auto&) {}, {}},
        {"no plan",
         [](auto& snapshot, auto&) { snapshot.productionPlan.reset(); },
         {{Code::productionPlanMissing, true, "", "",
           "The workspace has no production plan. A film is published once its plan was accepted."}}},
        {"a path twice",
         [](auto& snapshot, auto&) {
             snapshot.project.artifacts.push_back(snapshot.project.artifacts.front());
         },
         {{Code::pathRecordedTwice, true, "frames/s1.png", "",
           "The project records this file twice: frames/s1.png"}}},
        {"a path twice, but one of a kind that is not exported",
         [](auto& snapshot, auto&) {
             snapshot.project.artifacts.push_back(snapshot.project.artifacts.front());
             snapshot.project.artifacts.back().kind = "draft";
         },
         {}},
        {"an absolute path",
         [](auto& snapshot, auto&) {
             FilmArtifact artifact = snapshot.project.artifacts.front();
             artifact.path = "/etc/passwd";
             snapshot.project.artifacts.push_back(artifact);
         },
         {{Code::unsafePath, true, "/etc/passwd", "",
           "The path does not lead to a file in the film's folder: /etc/passwd"}}},
        {"a path that climbs",
         [](auto& snapshot, auto&) {
             FilmArtifact artifact = snapshot.project.artifacts.front();
             artifact.path = "a/../../b";
             snapshot.project.artifacts.push_back(artifact);
         },
         {{Code::unsafePath, true, "a/../../b", "",
           "The path does not lead to a file in the film's folder: a/../../b"}}},
        {"a path with a NUL byte",
         [](auto& snapshot, auto&) {
             FilmArtifact artifact = snapshot.project.artifacts.front();
             artifact.path = std::string("a\0b", 3);
             snapshot.project.artifacts.push_back(artifact);
         },
         {{Code::unsafePath, true, std::string("a\0b", 3), "",
           "The path does not lead to a file in the film's folder: " + std::string("a\0b", 3)}}},
        {"a digest in capital letters",
         [](auto& snapshot, auto&) {
             snapshot.project.artifacts[1].sha256 = "sha256:" + std::string(64, 'A');
         },
         {{Code::malformedDigest, true, "clips/s1.mp4", "",
           "The recorded digest is not \"sha256:\" and 64 lowercase digits: clips/s1.mp4"}}},
        {"a duration beyond 64 bits",
         [](auto&, auto& plan) { plan.shots[0].durationSeconds = tooLong; },
         {{Code::durationOutOfRange, true, "", "s1",
           "The duration of the shot \"s1\" does not fit 64 bits of milliseconds."}}},
        {"a planned duration that is no number",
         [](auto&, auto& plan) { plan.plannedDurationSeconds = std::numeric_limits<double>::quiet_NaN(); },
         {{Code::durationOutOfRange, true, "", "",
           "The film's planned duration does not fit 64 bits of milliseconds."}}},
        {"a timeline beyond 64 bits",
         [](auto&, auto& plan) {
             plan.shots[0].durationSeconds = 9.2e15;
             plan.shots.push_back(plan.shots[0]);
             plan.shots[1].id = "s2";
         },
         {{Code::timelineOutOfRange, true, "", "s2",
           "With the shot \"s2\" the film does not fit 64 bits of milliseconds."},
          {Code::keyframeMissing, false, "", "s2", "The shot \"s2\" has no key frame."},
          {Code::clipMissing, false, "", "s2", "The shot \"s2\" has no clip."}}},
        {"a shot's text that is not UTF-8",
         [](auto&, auto& plan) { plan.shots[0].prompt = notUTF8; },
         {{Code::notEncodable, true, "", "s1",
           "The shot \"s1\" cannot be written: prompt: the text is not UTF-8"}}},
        {"an artifact's text that is not UTF-8",
         [](auto& snapshot, auto&) { snapshot.project.artifacts[0].source = notUTF8; },
         {{Code::notEncodable, true, "frames/s1.png", "",
           "An artifact cannot be written: source: the text is not UTF-8"}}},
        {"a title that is not UTF-8",
         [](auto& snapshot, auto&) { snapshot.project.title = notUTF8; },
         {{Code::notEncodable, true, "", "",
           "The film's description cannot be written: title: the text is not UTF-8"}}},
        {"a start that is no number",
         [](auto&, auto& plan) {
             plan.shots[0].dialogue = {{"a", "b", std::numeric_limits<double>::infinity(), "c"}};
         },
         {{Code::notEncodable, true, "", "s1",
           "The shot \"s1\" cannot be written: dialogue[0].startSeconds: the number is not finite"}}},
        {"a gate that waits",
         [](auto& snapshot, auto&) { snapshot.project.approvals["cut"].status = "pending"; },
         {{Code::gateNotApproved, false, "", "",
           "The gate \"cut\" is not approved; its status is \"pending\"."}}},
        {"a blocking issue",
         [](auto& snapshot, auto&) {
             snapshot.project.issues = {{"no-sound", "No sound yet", true, {}}, {"hint", "x", false, {}}};
         },
         {{Code::blockingIssue, false, "", "", "A blocking issue is open: no-sound: No sound yet"}}},
        {"a step to do",
         [](auto& snapshot, auto&) { snapshot.project.proof.captions = false; },
         {{Code::proofStepIncomplete, false, "", "", "The production step \"captions\" is not complete."}}},
        {"another project's plan",
         [](auto& snapshot, auto& plan) {
             snapshot.project.projectId = "mine";
             plan.projectId = "other";
         },
         {{Code::planOfOtherProject, false, "", "",
           "The production plan belongs to the project \"other\", not to \"mine\"."}}},
        {"a shot id twice",
         [](auto&, auto& plan) { plan.shots.push_back(plan.shots[0]); },
         {{Code::shotIdRepeated, false, "", "s1",
           "Several shots have the id \"s1\" and so share key frame and clip."}}},
        {"no key frame",
         [](auto& snapshot, auto&) { snapshot.project.artifacts.erase(snapshot.project.artifacts.begin()); },
         {{Code::keyframeMissing, false, "", "s1", "The shot \"s1\" has no key frame."}}},
        {"no clip",
         [](auto& snapshot, auto&) { snapshot.project.artifacts.pop_back(); },
         {{Code::clipMissing, false, "", "s1", "The shot \"s1\" has no clip."}}},
        {"a negative duration",
         [](auto&, auto& plan) { plan.shots[0].durationSeconds = -1; },
         {{Code::negativeDuration, false, "", "s1", "The duration of the shot \"s1\" is below zero."}}},
    };
    return all;
}

TEST(Preflight, FindsWhatTheDocumentsTell) {
    for (const Row& row : rows()) {
        SCOPED_TRACE(row.sentence);
        CompleteWorkspace maker;
        FilmProductionPlan plan = *maker.snapshot.productionPlan;
        row.prepare(maker.snapshot, plan);
        if (maker.snapshot.productionPlan)
            maker.snapshot.productionPlan = plan;
        const std::vector<Found> found = preflightOf(maker.snapshot);
        EXPECT_EQ(found, row.expected);
        const bool blocking =
            std::ranges::any_of(found, [](const Found& finding) { return finding.blocking; });
        EXPECT_EQ(hasBlockingFinding(VistrelHandoffBuilder::preflight(maker.snapshot)), blocking);
    }
}

TEST(Preflight, ChecksTheProjectRootThatWillBeRecorded) {
    const CompleteWorkspace maker;
    EXPECT_THAT(
        preflightOf(maker.snapshot, notUTF8),
        testing::ElementsAre(Found{Code::notEncodable, true, "", "",
                                   "The project cannot be written: projectRoot: the text is not UTF-8"}));
}

TEST(Preflight, OrdersFindingsByCode) {
    CompleteWorkspace maker;
    for (const Row& row : rows()) {
        FilmProductionPlan plan =
            maker.snapshot.productionPlan ? *maker.snapshot.productionPlan : FilmProductionPlan();
        if (row.expected.empty() || row.expected[0].code != Code::productionPlanMissing)
            row.prepare(maker.snapshot, plan);
        if (maker.snapshot.productionPlan)
            maker.snapshot.productionPlan = plan;
    }
    std::set<Code> codes;
    std::vector<Code> order;
    for (const Found& found : preflightOf(maker.snapshot)) {
        codes.insert(found.code);
        order.push_back(found.code);
    }
    EXPECT_TRUE(std::ranges::is_sorted(order));
    EXPECT_EQ(codes.size(), 13U); // All but the missing plan, and the clip that an earlier row keeps.
}

/// A workspace of random faults. No file exists, so that a build which gets as far as the files throws.
FilmWorkspaceSnapshot randomWorkspace(std::mt19937& random, const FilmWorkspaceSnapshot& base) {
    const auto pick = [&](auto... choices) {
        const std::array all{choices...};
        return all[random() % sizeof...(choices)];
    };
    FilmWorkspaceSnapshot snapshot = base;
    FilmProductionPlan& plan = *snapshot.productionPlan;
    plan.plannedDurationSeconds = pick(1.0, 0.0, -5.0, 9.3e15, 9.2e15);
    plan.shots.clear();
    for (auto count = random() % 4; count > 0; --count)
        plan.shots.push_back(shotOf(pick("a", "b", "\xC3"), pick(0.04, 9.2e15, -9.2e15, 1e300, -1.0)));
    for (auto count = random() % 4; count > 0; --count)
        snapshot.project.artifacts.push_back(
            {1, pick("m", "\xFE"), "t", pick("shot-clip", "draft", "poster"),
             pick("clips/a.mp4", "clips/b.mp4", "/x", "..", "clips/a.mp4\xFF", "c"),
             pick("sha256:e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855", "sha256:"),
             "s"});
    if (random() % 8 == 0)
        snapshot.productionPlan.reset();
    return snapshot;
}

// The process would end if a build stopped it, and this test with it.
TEST(Preflight, LeavesNothingThatEndsTheProcess) {
    WorkspaceMaker maker;
    for (const std::string_view path : {"clips/a.mp4", "clips/b.mp4", "c"})
        maker.directory.write(path, "");
    std::mt19937 random(20260321); // NOLINT(cert-msc51-cpp): the same workspaces in every run
    int built = 0;
    int refused = 0;
    int blocked = 0;
    for (int round = 0; round < 10000; ++round) {
        const FilmWorkspaceSnapshot snapshot = randomWorkspace(random, maker.snapshot);
        if (hasBlockingFinding(VistrelHandoffBuilder::preflight(snapshot, "/r"))) {
            ++blocked;
            continue;
        }
        try {
            (void)encodeJSON(VistrelHandoffBuilder::build(snapshot, "/r"));
            ++built;
        } catch (const VistrelHandoffError&) {
            ++refused;
        }
    }
    EXPECT_GT(built, 500);
    EXPECT_GT(blocked, 500);
    EXPECT_EQ(refused, 0); // The files are there, and everything else is known before.
}

} // namespace
} // namespace kinovane::test
