// SPDX-License-Identifier: Apache-2.0

#include "commands/publish_failure.hpp"

#include <algorithm>
#include <exception>
#include <string_view>
#include <system_error>
#include <utility>
#include <variant>

#include <kinovane/publish.hpp>
#include <kinovane/tooling.hpp>
#include <kinovane/user_message.hpp>

#include "commands/damage_text.hpp"
#include "film/finding_code.hpp"
#include "film/next_step_text.hpp"
#include "session/interruption.hpp"
#include "terminal/human_text.hpp"
#include "terminal/shown_text.hpp"

namespace kinovane::tool {

namespace fs = std::filesystem;
namespace json = boost::json;

namespace {

constexpr const char* nothingWritten = "No manifest was written, and nothing was imported.";

/// The lines of a text of an external program, without white space at its end.
std::string shownLines(std::string_view text) {
    text.remove_suffix(text.size() - (text.find_last_not_of(" \t\r\n") + 1));
    std::string result;
    while (true) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        result += shown(line);
        if (end == text.size())
            return result;
        result += '\n';
        text.remove_prefix(end + 1);
    }
}

/// How an importer ended that a signal ended, or that failed without words.
std::string endingText(const FilmToolError& error, const ProcessResult& result) {
    const std::string message = userMessage(error);
    const std::string status = std::to_string(result.exitCode);
    // Without a signal and without words, the library has only fixed words about the film tool.
    if (message.ends_with("Film command exited " + status + "."))
        return "Vistrel failed with the exit status " + status + " and without a message";
    return shownLines(message.ends_with('.') ? message.substr(0, message.size() - 1) : message);
}

/// `importer` is its path, or the name under which it was not found.
std::string brokenImporterText(const FilmToolError& error, const std::string& importer) {
    const std::string path = ": " + shownPath(importer);
    if (const auto* failed = std::get_if<FilmToolError::commandFailed>(&error.value()))
        return endingText(error, failed->result) + path;
    if (const auto* reply = std::get_if<FilmToolError::invalidJSON>(&error.value()))
        return "Vistrel's reply is not a valid receipt (" + shown(reply->message) + ")" + path;
    if (std::holds_alternative<FilmToolError::executableNotFound>(error.value()))
        return "Vistrel's program was not found" + path +
               "\nNext: kinovane publish --vistrel PROGRAM, or kinovane doctor";
    return "Vistrel: " + shown(std::get<FilmToolError::launchFailed>(error.value()).message);
}

/// What was done before the publish ended, and what was not.
std::string stateText(const PublishProgress& progress, const PublishTarget& target) {
    switch (progress.step()) {
    case PublishStep::preflight:
    case PublishStep::build:
        return nothingWritten;
    case PublishStep::write:
        if (!progress.isDone())
            return nothingWritten;
        break;
    case PublishStep::validate:
        break;
    case PublishStep::import:
        return "Vistrel's library may have changed.";
    }
    if (target.isTemporary())
        return "Nothing was imported.";
    return "The manifest was written, and nothing was imported.";
}

std::string interruptionText(const PublishProgress& progress, const PublishTarget& target) {
    if (progress.step() == PublishStep::import)
        return "The import was interrupted: Vistrel's library may have changed.";
    std::string_view when = "before all files were verified";
    if (progress.step() == PublishStep::build && progress.isDone())
        when = "before the manifest was written";
    else if (progress.step() == PublishStep::write)
        when = "before Vistrel checked the film";
    else if (progress.step() == PublishStep::validate)
        when = progress.isDone() ? "before Vistrel imported the film" : "while Vistrel checked the film";
    return "Interrupted " + std::string(when) + ". " + stateText(progress, target);
}

CommandError refusalFailure(const PublishError::refused& refusal) {
    const std::string words = shownLines(refusal.message);
    std::string text = "Vistrel refused the film" + (words.empty() ? " without a reason" : ": " + words);
    text += refusal.step == PublishStep::validate ? "\nNothing was imported."
                                                  : "\nIt had accepted the film in the dry run.";
    return {ExitStatus::refused, text};
}

} // namespace

json::array findingsJSON(const std::vector<PreflightFinding>& findings) {
    json::array list;
    for (const PreflightFinding& finding : findings)
        list.push_back(json::object{{"code", nameOf(finding.code)}, {"text", finding.text}});
    return list;
}

CommandError findingsFailure(const std::vector<PreflightFinding>& findings) {
    std::string text = hasBlockingFinding(findings) ? "The film cannot be handed over:"
                                                    : "The film has warnings, which --strict refuses:";
    for (const PreflightFinding& finding : findings)
        text += "\n  " + shown(finding.text);
    return {ExitStatus::handoff, text, {{"findings", findingsJSON(findings)}}};
}

CommandError damageFailure(const std::vector<ArtifactOutcome>& damaged, const FilmWorkspaceSnapshot& film,
                           const fs::path& location, const PublishProgress& progress,
                           const Console& console) {
    const std::size_t count = damaged.size();
    std::string text = std::to_string(count) + " of " + countText(progress.files().files, "file", "files") +
                       (count == 1 ? " is damaged:\n" : " are damaged:\n");
    json::array list;
    for (const ArtifactOutcome& outcome : damaged) {
        text += fileText(outcome, film.root, messageColumns(), console.options().verbose);
        list.push_back(fileJSON(outcome, film.root));
    }
    text += std::string(nothingWritten) + "\nNext: " + shellLine(commandLine({"Next", "verify"}, location));
    const bool isUnreadable = std::ranges::all_of(
        damaged, [](const ArtifactOutcome& outcome) { return stateOf(outcome) == FileState::unreadable; });
    return {
        isUnreadable ? ExitStatus::fileSystem : ExitStatus::handoff, text, {{"damaged", std::move(list)}}};
}

CommandError publishFailure(const PublishProgress& progress, const PublishTarget& target,
                            const FilmWorkspaceSnapshot& film, const fs::path& location,
                            const std::string& importer, const Console& console) {
    if (progress.step() == PublishStep::build && !progress.isDone() && Interruption::signal() == 0)
        if (const std::vector<ArtifactOutcome> damaged = progress.damaged(); !damaged.empty())
            return damageFailure(damaged, film, location, progress, console);
    try {
        throw;
    } catch (const PublishError& error) {
        if (const auto* refusal = std::get_if<PublishError::refused>(&error.value()))
            return refusalFailure(*refusal);
        return findingsFailure(std::get<PublishError::blocked>(error.value()).findings);
    } catch (const FilmToolError& error) {
        return {ExitStatus::program,
                brokenImporterText(error, importer) +
                    (progress.step() == PublishStep::preflight ? "" : "\n" + stateText(progress, target))};
    } catch (const std::system_error& error) {
        if (isRequestedStop(error))
            return {statusOfSignal(Interruption::signal()), interruptionText(progress, target)};
        throw;
    }
}

} // namespace kinovane::tool
