// SPDX-License-Identifier: Apache-2.0

#include "commands/publish.hpp"

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include <kinovane/handoff.hpp>
#include <kinovane/preflight.hpp>
#include <kinovane/publish.hpp>
#include <kinovane/tooling.hpp>
#include <kinovane/workspace.hpp>

#include "commands/export_time.hpp"
#include "commands/publish_failure.hpp"
#include "commands/publish_progress.hpp"
#include "commands/publish_target.hpp"
#include "film/exported_files.hpp"
#include "film/film_location.hpp"
#include "json/json_output.hpp"
#include "session/failure.hpp"
#include "terminal/shown_text.hpp"

namespace kinovane::tool {

namespace json = boost::json;

namespace {

/// One run of the command.
class Publication {
  public:
    Publication(const PublishRequest& request, const Session& session)
        : request_(request), session_(session), console_(session.console),
          exportedAt_(exportTime(request.exportedAt,
                                 std::getenv("SOURCE_DATE_EPOCH"))), // NOLINT(concurrency-mt-unsafe)
          film_(loadFilm(request.film)), importer_(request.vistrel), target_(request, film_),
          progress_(console_, film_, target_) {}

    void run() {
        progress_.showLoaded();
        checkDocuments();
        try {
            if (importsOrChecks())
                importer_ = FilmToolClient::resolveExecutable(request_.vistrel).string();
            target_.requireWritable();
            checkSizes();
            if (importsOrChecks())
                publishFilm();
            else
                writeManifest();
        } catch (const CommandError&) {
            throw;
        } catch (...) {
            progress_.eraseLine();
            throw publishFailure(progress_, target_, film_, request_.film, importer_, console_);
        }
        showResult();
    }

  private:
    bool importsOrChecks() const { return !request_.manifestOnly && !target_.isStandardOutput(); }

    /// Refuses what the documents prevent, and shows the warnings.
    void checkDocuments() {
        receipt_.warnings = VistrelHandoffBuilder::preflight(film_, film_.root.string());
        std::vector<PreflightFinding> refused = receipt_.warnings;
        if (!request_.strict)
            std::erase_if(refused, [](const PreflightFinding& finding) {
                return finding.severity != PreflightSeverity::blocking;
            });
        if (!refused.empty())
            throw findingsFailure(refused);
        for (const PreflightFinding& finding : receipt_.warnings)
            progress_.showWarning(finding.text);
    }

    void checkSizes() {
        const std::vector<ArtifactOutcome> damaged = filesOfOtherSize(film_, session_.stop);
        if (!damaged.empty())
            throw damageFailure(damaged, film_, request_.film, progress_, console_);
    }

    void publishFilm() {
        PublishOptions options;
        options.exportedAt = exportedAt_;
        options.workers = request_.workers;
        options.dryRun = request_.dryRun;
        options.stop = session_.stop;
        options.onStep = [this](PublishStep step) { progress_.begin(step); };
        options.onStepDone = [this](PublishStep step, const PublishReceipt& receipt) {
            progress_.end(step, receipt);
            if (step == PublishStep::write)
                if (const auto handoff = readManifest(target_.manifest()))
                    progress_.compare(*handoff);
        };
        options.onProgress = [this](const VerificationProgress& progress) { progress_.verified(progress); };
        options.onOutcome = [this](const ArtifactOutcome& outcome) { progress_.examined(outcome); };
        options.examineAll = true;
        receipt_ = kinovane::publish(film_, film_.root.string(), target_.manifest(), VistrelClient(importer_),
                                     std::move(options))
                       .get();
    }

    void writeManifest() {
        HandoffBuildOptions options;
        options.workers = request_.workers;
        options.onProgress = [this](const VerificationProgress& progress) { progress_.verified(progress); };
        options.stop = session_.stop;
        options.onOutcome = [this](const ArtifactOutcome& outcome) { progress_.examined(outcome); };
        options.examineAll = true;
        progress_.begin(PublishStep::build);
        const VistrelHandoff handoff =
            VistrelHandoffBuilder::build(film_, film_.root.string(), exportedAt_, options);
        progress_.end(PublishStep::build, receipt_);
        if (session_.stop.stopRequested())
            throw std::system_error(std::make_error_code(std::errc::operation_canceled));

        progress_.begin(PublishStep::write);
        if (target_.isStandardOutput()) {
            const std::string text = encodeJSON(handoff, JSONFormat::pretty);
            receipt_.manifestDigest = VistrelHandoffBuilder::sha256(std::as_bytes(std::span(text)));
            console_.bytes(text);
        } else {
            receipt_.manifestDigest = VistrelHandoffBuilder::write(handoff, target_.manifest());
        }
        progress_.end(PublishStep::write, receipt_);
        progress_.compare(handoff);
    }

    /// Standard output gets the result after everything was done: a closed pipe then stops nothing.
    void showResult() const {
        if (target_.isStandardOutput())
            return;
        try {
            if (console_.options().json)
                console_.result(json::value(resultJSON()));
            else
                console_.result(resultText());
        } catch (const std::filesystem::filesystem_error& error) {
            if (!receipt_.imported)
                throw;
            throw CommandError(ExitStatus::fileSystem,
                               "standard output: " + error.code().message() + "\nThe film was imported.");
        }
    }

    std::string resultText() const {
        if (request_.manifestOnly)
            return shownPath(target_.manifest().string()) + "\n";
        if (const auto& imported = receipt_.imported)
            return shown(imported->projectURL.value_or("project " + imported->projectId)) + "\n";
        return "Vistrel accepts the film. Nothing was imported: this was a dry run.\n";
    }

    json::object resultJSON() const {
        const auto receiptJSON = [](const VistrelImportReceipt& receipt) {
            return parsedJSON(encodeJSON(receipt));
        };
        const ArtifactCount& files = progress_.files();
        const auto& changes = progress_.changes();
        return {{"version", 1},
                {"title", film_.project.title},
                {"verified", json::object{{"files", files.files}, {"bytes", files.bytes}}},
                {"manifest",
                 json::object{{"path", target_.isTemporary() ? json::value()
                                                             : json::value(target_.manifest().string())},
                              {"sha256", receipt_.manifestDigest}}},
                {"warnings", findingsJSON(receipt_.warnings)},
                {"checked", request_.manifestOnly ? json::value() : receiptJSON(receipt_.validation)},
                {"imported", receipt_.imported ? receiptJSON(*receipt_.imported) : json::value()},
                {"changes", changes ? json::value(changesJSON(*changes)) : json::value()}};
    }

    const PublishRequest& request_;
    const Session& session_;
    const Console& console_;
    std::optional<std::string> exportedAt_;
    FilmWorkspaceSnapshot film_;
    std::string importer_; ///< The path of the importer, once it was found.
    PublishTarget target_;
    PublishProgress progress_;
    PublishReceipt receipt_;
};

void requireOneMode(const PublishRequest& request) {
    if (request.dryRun && request.manifestOnly)
        throw UsageError("--dry-run and --manifest-only exclude each other");
    if (request.dryRun && request.manifest == "-")
        throw UsageError("--dry-run excludes --output -, which runs no importer");
}

} // namespace

ExitStatus publish(const PublishRequest& request, const Session& session) {
    requireOneMode(request);
    Publication(request, session).run();
    return ExitStatus::success;
}

} // namespace kinovane::tool
