// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <map>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include <kinovane/preflight.hpp>

#include "common/json/writer.hpp"
#include "handoff/containment.hpp"
#include "handoff/exported_kinds.hpp"
#include "handoff/handoff_tables.hpp"
#include "handoff/milliseconds.hpp"
#include "handoff/timeline.hpp"
#include "workspace/film_project_tables.hpp"
#include "workspace/production_plan_tables.hpp"

namespace kinovane {

namespace {

constexpr std::string_view approvedStatus = "approved";

bool isDigestText(std::string_view text) {
    constexpr std::string_view prefix = "sha256:";
    constexpr std::size_t digits = 64;
    if (!text.starts_with(prefix) || text.size() != prefix.size() + digits)
        return false;
    text.remove_prefix(prefix.size());
    return text.find_first_not_of("0123456789abcdef") == std::string_view::npos;
}

/// The message of the JSONEncodingError that encoding a record would throw; empty when there is none.
template <class Record>
std::string encodingFailure(const Record& record) {
    try {
        (void)json::encode(record, JSONFormat::compact);
        return {};
    } catch (const JSONEncodingError& error) {
        return error.what();
    }
}

/// Collects the findings of one snapshot.
class Preflight {
  public:
    Preflight(const FilmWorkspaceSnapshot& snapshot, const std::string& projectRoot)
        : snapshot_(snapshot), projectRoot_(projectRoot), artifacts_(exportedArtifacts(snapshot.project)) {}

    std::vector<PreflightFinding> findings() && {
        if (!snapshot_.productionPlan)
            block(PreflightCode::productionPlanMissing,
                  "The workspace has no production plan. A film is published once its plan was accepted.");
        checkArtifacts();
        checkProject();
        if (snapshot_.productionPlan)
            checkPlan(*snapshot_.productionPlan);
        std::vector<PreflightFinding> result;
        result.reserve(findings_.size());
        for (auto& [code, finding] : findings_)
            result.push_back(std::move(finding));
        return result;
    }

  private:
    void block(PreflightCode code, std::string text, const FilmArtifact* artifact = nullptr,
               const std::string* shotId = nullptr) {
        add(code, PreflightSeverity::blocking, std::move(text), artifact, shotId);
    }

    void warn(PreflightCode code, std::string text, const std::string* shotId = nullptr) {
        add(code, PreflightSeverity::warning, std::move(text), nullptr, shotId);
    }

    void add(PreflightCode code, PreflightSeverity severity, std::string text, const FilmArtifact* artifact,
             const std::string* shotId) {
        PreflightFinding finding{code, severity, {}, {}, std::move(text)};
        if (artifact != nullptr)
            finding.artifact = *artifact;
        if (shotId != nullptr)
            finding.shotId = *shotId;
        findings_.emplace(code, std::move(finding));
    }

    void checkArtifacts() {
        std::unordered_set<std::string_view> paths;
        for (const FilmArtifact* artifact : artifacts_) {
            const std::string& path = artifact->path;
            if (!paths.insert(path).second)
                block(PreflightCode::pathRecordedTwice, "The project records this file twice: " + path,
                      artifact);
            if (isUnsafeText(path))
                block(PreflightCode::unsafePath,
                      "The path does not lead to a file in the film's folder: " + path, artifact);
            if (!isDigestText(artifact->sha256))
                block(PreflightCode::malformedDigest,
                      "The recorded digest is not \"sha256:\" and 64 lowercase digits: " + path, artifact);
            const VistrelHandoffAsset asset{.id = {},
                                            .kind = artifact->kind,
                                            .relativePath = path,
                                            .sha256 = artifact->sha256,
                                            .bytes = artifact->bytes,
                                            .contentType = artifact->contentType,
                                            .source = artifact->source};
            if (const std::string failure = encodingFailure(asset); !failure.empty())
                block(PreflightCode::notEncodable, "An artifact cannot be written: " + failure, artifact);
        }
    }

    void checkProject() {
        const FilmProject& project = snapshot_.project;
        for (const auto& [gate, approval] : project.approvals)
            if (approval.status != approvedStatus)
                warn(PreflightCode::gateNotApproved,
                     "The gate \"" + gate + "\" is not approved; its status is \"" + approval.status + "\".");
        for (const FilmIssue& issue : project.issues)
            if (issue.blocking)
                warn(PreflightCode::blockingIssue,
                     "A blocking issue is open: " + issue.code + ": " + issue.message);
        for (const FilmProofStep& step : project.proof.steps())
            if (!step.complete)
                warn(PreflightCode::proofStepIncomplete,
                     "The production step \"" + std::string(step.key) + "\" is not complete.");
        const VistrelHandoffSource source{
            project.projectId, projectRoot_, {}, project.contractVersion, project.updatedAt};
        if (const std::string failure = encodingFailure(source); !failure.empty())
            block(PreflightCode::notEncodable, "The project cannot be written: " + failure);
    }

    void checkPlan(const FilmProductionPlan& plan) {
        if (plan.projectId != snapshot_.project.projectId)
            warn(PreflightCode::planOfOtherProject, "The production plan belongs to the project \"" +
                                                        plan.projectId + "\", not to \"" +
                                                        snapshot_.project.projectId + "\".");
        checkHeader(plan);
        checkShots(plan);
    }

    void checkHeader(const FilmProductionPlan& plan) {
        const double seconds = plan.plannedDurationSeconds;
        if (!millisecondsOf(seconds))
            block(PreflightCode::durationOutOfRange,
                  "The film's planned duration does not fit 64 bits of milliseconds.");
        else if (seconds < 0)
            warn(PreflightCode::negativeDuration, "The film's planned duration is below zero.");

        VistrelHandoffProject header;
        header.title = snapshot_.project.title;
        header.idea = snapshot_.project.idea;
        if (snapshot_.treatment) {
            header.logline = snapshot_.treatment->logline;
            header.synopsis = snapshot_.treatment->synopsis;
            header.theme = snapshot_.treatment->theme;
        }
        header.aspectRatio = plan.target.aspectRatio.value_or("");
        if (const std::string failure = encodingFailure(header); !failure.empty())
            block(PreflightCode::notEncodable, "The film's description cannot be written: " + failure);
        for (const FilmCastMember& member : plan.cast)
            if (const std::string failure = encodingFailure(member); !failure.empty())
                block(PreflightCode::notEncodable, "A cast member cannot be written: " + failure);
        for (const FilmLocation& location : plan.locations)
            if (const std::string failure = encodingFailure(location); !failure.empty())
                block(PreflightCode::notEncodable, "A location cannot be written: " + failure);
    }

    void checkShots(const FilmProductionPlan& plan) {
        std::unordered_set<std::string_view> paths;
        for (const FilmArtifact* artifact : artifacts_)
            paths.insert(artifact->path);
        std::unordered_map<std::string_view, int> uses;
        std::optional<std::int64_t> end = 0;
        for (const FilmProductionShot& shot : plan.shots) {
            const std::optional<std::int64_t> duration = millisecondsOf(shot.durationSeconds);
            if (!duration)
                block(PreflightCode::durationOutOfRange,
                      "The duration of the shot \"" + shot.id + "\" does not fit 64 bits of milliseconds.",
                      nullptr, &shot.id);
            else if (shot.durationSeconds < 0)
                warn(PreflightCode::negativeDuration,
                     "The duration of the shot \"" + shot.id + "\" is below zero.", &shot.id);
            // A shot whose own duration is out of range has its finding already.
            if (duration && end && !(end = endOnTimeline(end, duration)))
                block(PreflightCode::timelineOutOfRange,
                      "With the shot \"" + shot.id + "\" the film does not fit 64 bits of milliseconds.",
                      nullptr, &shot.id);
            if (++uses[shot.id] == 2)
                warn(PreflightCode::shotIdRepeated,
                     "Several shots have the id \"" + shot.id + "\" and so share key frame and clip.",
                     &shot.id);
            if (!paths.contains(keyframePath(shot.id)))
                warn(PreflightCode::keyframeMissing, "The shot \"" + shot.id + "\" has no key frame.",
                     &shot.id);
            if (!paths.contains(clipPath(shot.id)))
                warn(PreflightCode::clipMissing, "The shot \"" + shot.id + "\" has no clip.", &shot.id);
            checkShotText(shot);
        }
    }

    void checkShotText(const FilmProductionShot& shot) {
        VistrelHandoffShot written;
        written.id = shot.id;
        written.purpose = shot.purpose;
        written.prompt = shot.prompt;
        written.framePrompt = shot.framePrompt;
        written.characterIds = shot.characters;
        written.locationId = shot.location;
        written.transition = shot.transition;
        written.dialogue = shot.dialogue;
        written.soundEffects = shot.soundEffects;
        if (const std::string failure = encodingFailure(written); !failure.empty())
            block(PreflightCode::notEncodable, "The shot \"" + shot.id + "\" cannot be written: " + failure,
                  nullptr, &shot.id);
    }

    const FilmWorkspaceSnapshot& snapshot_;
    const std::string& projectRoot_;
    std::vector<const FilmArtifact*> artifacts_;
    std::multimap<PreflightCode, PreflightFinding>
        findings_; ///< Those of one code in the order of the documents.
};

} // namespace

bool hasBlockingFinding(const std::vector<PreflightFinding>& findings) noexcept {
    return std::ranges::any_of(findings, [](const PreflightFinding& finding) {
        return finding.severity == PreflightSeverity::blocking;
    });
}

std::vector<PreflightFinding> VistrelHandoffBuilder::preflight(const FilmWorkspaceSnapshot& snapshot,
                                                               const std::string& projectRoot) {
    return Preflight(snapshot, projectRoot).findings();
}

} // namespace kinovane
