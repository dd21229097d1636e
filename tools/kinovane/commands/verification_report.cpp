// SPDX-License-Identifier: Apache-2.0

#include "commands/verification_report.hpp"

#include <cmath>
#include <map>

#include "commands/damage_text.hpp"
#include "film/next_step_text.hpp"
#include "json/json_output.hpp"
#include "session/interruption.hpp"
#include "terminal/human_text.hpp"
#include "terminal/paragraph.hpp"
#include "terminal/progress_text.hpp"
#include "terminal/shown_text.hpp"
#include "terminal/style.hpp"

namespace kinovane::tool {

namespace fs = std::filesystem;
namespace json = boost::json;

namespace {

/// The numbers of a list of outcomes.
struct Counts {
    explicit Counts(const std::vector<ArtifactOutcome>& outcomes) {
        for (const ArtifactOutcome& outcome : outcomes) {
            const FileState state = stateOf(outcome);
            ++byState[state];
            if (state == FileState::sound) {
                ++sound;
                bytes += outcome.actualBytes.value_or(0);
            } else if (state == FileState::unreadable) {
                ++unreadable;
            } else {
                ++damaged;
            }
        }
    }

    std::map<FileState, std::size_t> byState;
    std::size_t sound = 0;
    std::size_t unreadable = 0;
    std::size_t damaged = 0;
    std::uint64_t bytes = 0; ///< Of the sound files.
};

std::string isOrAre(std::size_t count) { return count == 1 ? " is" : " are"; }

/// "2 of 57 files are damaged."
std::string damagedText(const Counts& counts, const std::string& files) {
    std::string text;
    if (counts.damaged > 0)
        text += styled(Style::bad, std::to_string(counts.damaged) + " of " + files + isOrAre(counts.damaged) +
                                       " damaged.") +
                "\n";
    if (counts.unreadable > 0)
        text += styled(Style::warning,
                       std::to_string(counts.unreadable) + " of " + files + " could not be read, so " +
                           (counts.unreadable == 1 ? "its" : "their") + " state is unknown.") +
                "\n";
    return text;
}

/// The command, such as "verify", for this film, as a line for a shell. `location` is as the user gave it.
std::string commandFor(std::vector<std::string> words, const fs::path& location) {
    words.insert(words.begin(), "kinovane");
    for (const std::string& word : filmArgument(location))
        words.push_back(word);
    return shellLine(words);
}

std::string nextStep(const Counts& counts, const fs::path& location, std::size_t columns) {
    const auto has = [&](FileState state) { return counts.byState.contains(state); };
    if (has(FileState::changed) || has(FileState::missing))
        return nextCommandText("restore the files from a copy of the film, then",
                               commandFor({"verify"}, location), columns);
    if (counts.damaged > 0)
        return nextCommandText("let the film tool correct its records:", commandFor({"recover"}, location),
                               columns);
    return counts.unreadable > 0
               ? nextCommandText("make the files readable, then", commandFor({"verify"}, location), columns)
               : "";
}

std::string interruptionText(const VerificationReport& report, const Counts& counts) {
    const std::string damaged =
        counts.damaged == 0 ? "none is" : std::to_string(counts.damaged) + isOrAre(counts.damaged);
    return "Interrupted: " + std::to_string(report.outcomes.size()) + " of " +
           countText(report.chosen, "file was", "files were") + " examined, " + damaged + " damaged.\n";
}

std::string checksumsText(const ChecksumReport& report) {
    const Counts unrecorded(report.outcomes);
    const std::size_t wrong = report.differing.size() + unrecorded.damaged + unrecorded.unreadable;
    const std::string list = countText(report.listed, "file", "files") + " in " + shownPath(report.file);
    if (wrong == 0)
        return report.listed == 1 ? "The " + list.substr(2) + " is as listed.\n"
                                  : "All " + list + " are as listed.\n";
    return styled(Style::bad, std::to_string(wrong) + " of " + list + isOrAre(wrong) + " not as listed.") +
           "\n";
}

std::string unrecordedText(const std::vector<UnrecordedFile>& files) {
    if (files.empty())
        return "Every file in the film's folder is recorded.\n";
    std::uint64_t bytes = 0;
    for (const UnrecordedFile& file : files)
        bytes += file.bytes.value_or(0);
    return countText(files.size(), "file in the film's folder is", "files in the film's folder are") +
           " not recorded: " + sizeText(static_cast<std::int64_t>(bytes)) + ".\n";
}

ExitStatus statusOf(const Counts& counts) {
    if (counts.damaged > 0)
        return ExitStatus::handoff;
    return counts.unreadable > 0 ? ExitStatus::fileSystem : ExitStatus::success;
}

json::object findingJSON(const PreflightFinding& finding) {
    return {{"text", finding.text},
            {"path", finding.artifact ? json::value(finding.artifact->path) : json::value()},
            {"shotId", optionalValue(finding.shotId)}};
}

json::object listedJSON(const ArtifactOutcome& outcome, const fs::path& root) {
    const std::string reason = reasonText(outcome, root);
    return {{"path", outcome.artifact.path},
            {"state", nameOf(stateOf(outcome))},
            {"listedDigest", outcome.artifact.sha256},
            {"reason", reason.empty() ? json::value() : json::value(reason)}};
}

json::object checksumsJSON(const ChecksumReport& report, const fs::path& root) {
    json::array differing(report.differing.begin(), report.differing.end());
    json::array unrecorded;
    for (const ArtifactOutcome& outcome : report.outcomes)
        unrecorded.push_back(listedJSON(outcome, root));
    return {{"file", report.file},
            {"listed", report.listed},
            {"differing", differing},
            {"unrecorded", unrecorded}};
}

json::array unrecordedJSON(const std::vector<UnrecordedFile>& files) {
    json::array list;
    for (const UnrecordedFile& file : files)
        list.push_back({{"path", file.path},
                        {"bytes", optionalValue(file.bytes)},
                        {"remark", file.remark.empty() ? json::value() : json::value(file.remark)}});
    return list;
}

std::string_view wordOf(const VerificationReport& report) {
    if (report.isInterrupted)
        return "interrupted";
    switch (report.status()) {
    case ExitStatus::success:
        return "sound";
    case ExitStatus::fileSystem:
        return "unreadable";
    default:
        return report.findings.empty() || Counts(report.outcomes).damaged > 0 ? "damaged" : "blocked";
    }
}

} // namespace

ExitStatus VerificationReport::status() const {
    if (isInterrupted)
        return statusOfSignal(Interruption::signal());
    Counts counts(outcomes);
    if (!findings.empty())
        ++counts.damaged;
    if (checksums) {
        const Counts listed(checksums->outcomes);
        counts.damaged += checksums->differing.size() + listed.damaged;
        counts.unreadable += listed.unreadable;
    }
    return statusOf(counts);
}

std::string VerificationReport::summary(std::size_t columns) const {
    const Counts counts(outcomes);
    if (isInterrupted)
        return paragraphs(interruptionText(*this, counts), columns);
    const std::string files = countText(chosen, "file", "files");
    const std::string recorded =
        std::to_string(chosen) + " of " +
        countText(film->project.artifacts.size(), "recorded file", "recorded files") + " examined.\n";
    std::string text;
    if (chosen == 0)
        text = "There are no files to verify.\n" + recorded;
    else if (counts.sound == chosen)
        text = styled(Style::good, chosen == 1 ? "The file is sound:" : "All " + files + " are sound:") +
               " " + throughputText(counts.bytes, seconds) + ".\n" + recorded;
    else
        text = damagedText(counts, files) + countText(counts.sound, "file is", "files are") +
               " sound: " + throughputText(counts.bytes, seconds) + ".\n" + recorded;
    if (checksums)
        text += checksumsText(*checksums);
    if (unrecorded)
        text += unrecordedText(*unrecorded);
    text = paragraphs(text, columns);
    if (chosen == 0 && !film->project.artifacts.empty())
        return text + nextCommandText("", commandFor({"verify", "--all"}, location), columns);
    return text + nextStep(counts, location, columns);
}

json::object VerificationReport::json(bool verbose) const {
    const Counts counts(outcomes);
    json::array documents;
    for (const PreflightFinding& finding : findings)
        documents.push_back(findingJSON(finding));
    json::array damaged;
    json::array files;
    for (const ArtifactOutcome& outcome : outcomes) {
        if (!outcome.sound())
            damaged.push_back(fileJSON(outcome, film->root));
        if (verbose)
            files.push_back(fileJSON(outcome, film->root));
    }
    json::object result{{"film", film->root.string()},
                        {"title", film->project.title},
                        {"state", wordOf(*this)},
                        {"findings", documents},
                        {"recorded", film->project.artifacts.size()},
                        {"chosen", chosen},
                        {"examined", outcomes.size()},
                        {"sound", counts.sound},
                        {"unreadable", counts.unreadable},
                        {"bytes", counts.bytes},
                        {"seconds", std::round(seconds * 1000) / 1000},
                        {"damaged", damaged}};
    if (verbose)
        result["files"] = files;
    if (checksums)
        result["checksums"] = checksumsJSON(*checksums, film->root);
    if (unrecorded)
        result["unrecorded"] = unrecordedJSON(*unrecorded);
    return result;
}

} // namespace kinovane::tool
