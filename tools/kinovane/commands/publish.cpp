// SPDX-License-Identifier: Apache-2.0

#include "commands/publish.hpp"

#include <limits>
#include <utility>
#include <vector>

#include <kinovane/handoff.hpp>
#include <kinovane/preflight.hpp>
#include <kinovane/publish.hpp>
#include <kinovane/tooling.hpp>
#include <kinovane/workspace.hpp>

#include "terminal/human_text.hpp"
#include "json/json_text.hpp"
#include "session/output.hpp"
#include "terminal/verification_line.hpp"
#include "film/workspace_summary.hpp"

namespace kinovane::tool {

namespace fs = std::filesystem;

namespace {

/// Prints each step when it is done; prints nothing when the result is printed as JSON.
class StepReport {
  public:
    explicit StepReport(bool silent) : silent_(silent) {}

    void print(const std::string& step, const std::string& result) const {
        if (!silent_)
            printResult(step + std::string(step.size() < column ? column - step.size() : 1, ' ') +
                        plainText(result) + "\n");
    }

  private:
    static constexpr std::size_t column = 10;
    bool silent_;
};

/// Whether `build` reports the finding in words of its own.
bool isReportedByBuild(const PreflightFinding& finding) {
    return finding.code == PreflightCode::productionPlanMissing || finding.code == PreflightCode::unsafePath;
}

/// Throws PublishError with everything in the documents that prevents the handoff, before a file is read. A
/// single finding that `build` reports is left to it.
void requirePublishable(const FilmWorkspaceSnapshot& workspace) {
    std::vector<PreflightFinding> findings =
        VistrelHandoffBuilder::preflight(workspace, workspace.root.string());
    std::erase_if(findings, [](const PreflightFinding& finding) {
        return finding.severity != PreflightSeverity::blocking;
    });
    if (findings.size() > 1 || (findings.size() == 1 && !isReportedByBuild(findings.front())))
        throw PublishError(PublishError::blocked{std::move(findings)});
}

VistrelHandoff verifiedHandoff(const FilmWorkspaceSnapshot& workspace, const PublishRequest& request) {
    VerificationLine line(!request.json);
    HandoffBuildOptions options;
    options.workers = request.workers;
    options.onProgress = line.callback();
    return VistrelHandoffBuilder::build(workspace, workspace.root.string(), std::nullopt, options);
}

std::int64_t totalBytes(const VistrelHandoff& handoff) {
    std::int64_t total = 0;
    for (const VistrelHandoffAsset& asset : handoff.assets)
        if (__builtin_add_overflow(total, asset.bytes, &total))
            return std::numeric_limits<std::int64_t>::max();
    return total;
}

/// "2 scenes, 7 shots, 57 files", as far as the receipt counts them.
std::string countsText(const VistrelImportReceipt& receipt) {
    std::string text;
    const auto append = [&](const std::optional<std::int64_t>& count, const char* one, const char* many) {
        if (count)
            text += (text.empty() ? "" : ", ") + std::to_string(*count) + " " + (*count == 1 ? one : many);
    };
    append(receipt.importedScenes, "scene", "scenes");
    append(receipt.importedShots, "shot", "shots");
    append(receipt.importedAssets, "file", "files");
    return text.empty() ? "the film" : text;
}

void refuseUnlessOK(const VistrelImportReceipt& receipt, const char* refusal) {
    if (!receipt.ok)
        throw ImportRefused(refusal);
}

VistrelImportReceipt validate(const VistrelClient& vistrel, const fs::path& manifest,
                              const StepReport& report) {
    auto receipt = vistrel.validate(manifest).get();
    refuseUnlessOK(receipt, "Vistrel refused the manifest in the dry run. Nothing was imported.");
    report.print("Checked", "Vistrel accepts " + countsText(receipt));
    return receipt;
}

VistrelImportReceipt import(const VistrelClient& vistrel, const fs::path& manifest,
                            const StepReport& report) {
    auto receipt = vistrel.import(manifest).get();
    refuseUnlessOK(receipt, "Vistrel refused the import.");
    report.print("Imported", countsText(receipt));
    report.print("", receipt.projectURL.value_or("project " + receipt.projectId));
    return receipt;
}

std::string jsonText(const VistrelHandoff& handoff, const fs::path& manifest, const std::string& digest,
                     const VistrelImportReceipt& check, const std::optional<VistrelImportReceipt>& imported) {
    const JSONValue document =
        JSONObject()
            .add("title", handoff.project.title)
            .add("verified",
                 JSONObject().add("files", handoff.assets.size()).add("bytes", totalBytes(handoff)))
            .add("manifest", JSONObject().add("path", manifest.string()).add("sha256", digest))
            .add("checked", JSONValue::fromJSON(encodeJSON(check)))
            .add("imported", imported ? JSONValue::fromJSON(encodeJSON(*imported)) : JSONValue(nullptr));
    return document.text() + "\n";
}

} // namespace

void publish(const PublishRequest& request) {
    const StepReport report(request.json);
    const FilmWorkspaceSnapshot workspace = FilmProjectLoader::load(runManifestAt(request.runManifest));
    // Looked up first, so that a missing program is reported before gigabytes are read.
    FilmToolClient::resolveExecutable(request.vistrel);
    const VistrelClient vistrel(request.vistrel);
    report.print("Loaded", workspace.project.title);
    requirePublishable(workspace);

    const VistrelHandoff handoff = verifiedHandoff(workspace, request);
    report.print("Verified",
                 countText(handoff.assets.size(), "file", "files") + ", " + sizeText(totalBytes(handoff)));

    // Absolute, so that the importer does not parse a name that begins with "-" as an option.
    const fs::path manifest =
        fs::absolute(request.manifest.value_or(workspace.root / "vistrel-handoff.json"));
    const std::string digest = VistrelHandoffBuilder::write(handoff, manifest);
    report.print("Written", manifest.string());
    report.print("", digest);

    const VistrelImportReceipt check = validate(vistrel, manifest, report);
    std::optional<VistrelImportReceipt> imported;
    if (request.dryRun)
        report.print("Imported", "nothing: this was a dry run");
    else
        imported = import(vistrel, manifest, report);
    if (request.json)
        printResult(jsonText(handoff, manifest, digest, check, imported));
}

} // namespace kinovane::tool
