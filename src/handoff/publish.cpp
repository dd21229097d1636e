// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <utility>

#include <kinovane/publish.hpp>

#include "common/overloaded.hpp"
#include "tooling/process/executable_lookup.hpp"
#include "tooling/process/location_argument.hpp"
#include "tooling/process/program_error.hpp"
#include "tooling/process/start_task.hpp"

namespace kinovane {

namespace {

/// One publish, step by step, on the operation's thread.
class Publish {
  public:
    Publish(FilmWorkspaceSnapshot&& snapshot, std::string&& projectRoot, std::filesystem::path&& manifest,
            VistrelClient&& importer, PublishOptions&& options)
        : snapshot_(std::move(snapshot)), projectRoot_(std::move(projectRoot)),
          manifest_(std::move(manifest)), importer_(std::move(importer)), options_(std::move(options)) {}

    PublishReceipt run() {
        PublishReceipt receipt;
        receipt.manifest = manifest_;
        begin(PublishStep::preflight);
        receipt.warnings = requireNoBlockingFinding();
        requireImporter();
        end(PublishStep::preflight, receipt);

        begin(PublishStep::build);
        const VistrelHandoff handoff =
            VistrelHandoffBuilder::build(snapshot_, projectRoot_, options_.exportedAt,
                                         {.workers = options_.workers,
                                          .onProgress = options_.onProgress,
                                          .stop = options_.stop,
                                          .onOutcome = options_.onOutcome,
                                          .examineAll = options_.examineAll});
        end(PublishStep::build, receipt);

        begin(PublishStep::write);
        receipt.manifestDigest = VistrelHandoffBuilder::write(handoff, manifest_);
        end(PublishStep::write, receipt);

        RunOptions run;
        run.stop = options_.stop;
        // An importer that can be stopped is not in the terminal's foreground: reading would suspend it.
        run.standardInput = StandardInput::empty;
        begin(PublishStep::validate);
        receipt.validation = accepted(PublishStep::validate, importer_.validate(manifest_, run));
        end(PublishStep::validate, receipt);
        if (!options_.dryRun) {
            begin(PublishStep::import);
            receipt.imported = accepted(PublishStep::import, importer_.import(manifest_, run));
            end(PublishStep::import, receipt);
        }
        return receipt;
    }

  private:
    void begin(PublishStep step) const {
        if (options_.stop.stopRequested())
            throw std::system_error(std::make_error_code(std::errc::operation_canceled));
        if (options_.onStep)
            options_.onStep(step);
    }

    void end(PublishStep step, const PublishReceipt& receipt) const {
        if (options_.onStepDone)
            options_.onStepDone(step, receipt);
    }

    /// Returns the warnings.
    std::vector<PreflightFinding> requireNoBlockingFinding() const {
        std::vector<PreflightFinding> findings = VistrelHandoffBuilder::preflight(snapshot_, projectRoot_);
        const bool refused = hasBlockingFinding(findings) || (options_.refuseWarnings && !findings.empty());
        if (!refused)
            return findings;
        if (!options_.refuseWarnings)
            std::erase_if(findings, [](const PreflightFinding& finding) {
                return finding.severity != PreflightSeverity::blocking;
            });
        throw PublishError(PublishError::blocked{std::move(findings)});
    }

    /// Before gigabytes of media files are read.
    void requireImporter() const {
        const std::string& executable = importer_.executable();
        try {
            (void)ExecutableLookup(executable).find();
        } catch (const FilmToolError& error) {
            throw ProgramError(error, {std::filesystem::path(executable).filename().string(), std::nullopt});
        }
    }

    static VistrelImportReceipt accepted(PublishStep step, Task<VistrelImportReceipt> reply) {
        try {
            VistrelImportReceipt receipt = reply.get();
            if (!receipt.ok)
                throw PublishError(PublishError::refused{step, {}, std::move(receipt)});
            return receipt;
        } catch (const FilmToolError& error) {
            const auto* failed = std::get_if<FilmToolError::commandFailed>(&error.value());
            if (failed == nullptr || failed->result.stderr.empty() || endingSignal(error))
                throw;
            throw PublishError(PublishError::refused{step, failed->result.stderr, std::nullopt});
        }
    }

    FilmWorkspaceSnapshot snapshot_;
    std::string projectRoot_;
    std::filesystem::path manifest_;
    VistrelClient importer_;
    PublishOptions options_;
};

/// "Vistrel refused the film" and its words, without white space at their end.
std::string refusal(const PublishErrorCases::refused& error) {
    const std::string text = error.step == PublishStep::validate ? "Vistrel refused the film in the dry run"
                                                                 : "Vistrel refused the film";
    const std::size_t end = error.message.find_last_not_of(" \t\r\n");
    if (end == std::string::npos)
        return text + ".";
    return text + ": " + error.message.substr(0, end + 1);
}

std::string list(const std::vector<PreflightFinding>& findings) {
    std::string text = "The film cannot be published.";
    for (const PreflightFinding& finding : findings)
        text += "\n" + finding.text;
    return text;
}

} // namespace

std::string PublishErrorCases::describe(const Case& value) {
    return std::visit(Overloaded{
                          [](const blocked& error) { return list(error.findings); },
                          [](const refused& error) { return refusal(error); },
                      },
                      value);
}

PublishError::~PublishError() = default;

Task<PublishReceipt> publish(FilmWorkspaceSnapshot snapshot, std::string projectRoot,
                             std::filesystem::path manifest, VistrelClient importer, PublishOptions options) {
    try {
        manifest = locationArgument("handoff manifest", manifest);
    } catch (const FilmToolError&) {
        return Task<PublishReceipt>::failed(std::current_exception());
    }
    return startTask<PublishReceipt>(
        [publish = Publish(std::move(snapshot), std::move(projectRoot), std::move(manifest),
                           std::move(importer), std::move(options))]() mutable { return publish.run(); });
}

} // namespace kinovane
