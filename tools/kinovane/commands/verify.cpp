// SPDX-License-Identifier: Apache-2.0

#include "commands/verify.hpp"

#include <algorithm>
#include <string>
#include <variant>
#include <vector>

#include <kinovane/handoff.hpp>
#include <kinovane/workspace.hpp>

#include "terminal/human_text.hpp"
#include "json/json_text.hpp"
#include "session/output.hpp"
#include "terminal/verification_line.hpp"
#include "film/workspace_summary.hpp"

namespace kinovane::tool {

namespace {

/// The result of the examination.
struct Findings {
    explicit Findings(const std::vector<ArtifactOutcome>& outcomes) {
        for (const ArtifactOutcome& outcome : outcomes) {
            all.add(outcome.artifact);
            if (!outcome.sound())
                damaged.push_back(outcome);
        }
    }

    ArtifactCount all;
    std::vector<ArtifactOutcome> damaged; ///< In the project's order.
};

std::vector<ArtifactOutcome> outcomesOf(const FilmWorkspaceSnapshot& workspace,
                                        const VerifyRequest& request) {
    VerificationLine line(!request.json);
    HandoffBuildOptions options;
    options.workers = request.workers;
    options.onProgress = line.callback();
    return VistrelHandoffBuilder::audit(workspace, options);
}

const char* kindOf(const ArtifactOutcome& outcome) {
    if (!outcome.refusal)
        return "unreadable";
    const auto& refusal = outcome.refusal->value();
    if (std::holds_alternative<VistrelHandoffError::missingArtifact>(refusal))
        return "missing";
    return std::holds_alternative<VistrelHandoffError::unsafeArtifactPath>(refusal) ? "unsafe" : "mismatch";
}

std::string humanText(const Findings& findings) {
    const auto& [all, damaged] = findings;
    if (all.files == 0)
        return "There are no files to verify.\n";
    const std::string files = countText(all.files, "file", "files");
    if (damaged.empty())
        return "All files are sound: " + files + ", " + sizeText(all.bytes) + ".\n";
    std::string text;
    for (const ArtifactOutcome& outcome : damaged)
        text += plainText(outcome.description()) + "\n";
    return text + std::to_string(damaged.size()) + " of " + files + (damaged.size() == 1 ? " is" : " are") +
           " damaged.\n";
}

std::string jsonText(const Findings& findings) {
    const auto& [all, damaged] = findings;
    JSONList list;
    for (const ArtifactOutcome& outcome : damaged)
        list.add(JSONObject()
                     .add("path", outcome.artifact.path)
                     .add("kind", kindOf(outcome))
                     .add("description", outcome.description()));
    const JSONValue document = JSONObject()
                                   .add("files", all.files)
                                   .add("bytes", all.bytes)
                                   .add("sound", all.files - damaged.size())
                                   .add("damaged", list);
    return document.text() + "\n";
}

ExitStatus statusOf(const std::vector<ArtifactOutcome>& damaged) {
    if (damaged.empty())
        return ExitStatus::success;
    const bool refused = std::ranges::any_of(
        damaged, [](const ArtifactOutcome& outcome) { return outcome.refusal.has_value(); });
    return refused ? ExitStatus::handoff : ExitStatus::fileSystem;
}

} // namespace

ExitStatus verify(const VerifyRequest& request) {
    const FilmWorkspaceSnapshot workspace = FilmProjectLoader::load(runManifestAt(request.runManifest));
    const Findings findings(outcomesOf(workspace, request));
    printResult(request.json ? jsonText(findings) : humanText(findings));
    return statusOf(findings.damaged);
}

} // namespace kinovane::tool
