// SPDX-License-Identifier: Apache-2.0

#include "commands/publish_progress.hpp"

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <unordered_map>

#include <unistd.h>

#include "commands/damage_text.hpp"
#include "film/exported_files.hpp"
#include "terminal/display_width.hpp"
#include "terminal/human_text.hpp"
#include "terminal/shown_text.hpp"
#include "terminal/style.hpp"

namespace kinovane::tool {

namespace {

constexpr std::size_t stepColumns = 10;
constexpr std::chrono::seconds longStep{10}; // Shorter ones are shown without their duration.

constexpr std::size_t longestTitle = 200;

/// The words of the text below each other, behind the prefix and below its end.
std::string indented(std::string prefix, const std::string& text) {
    const std::size_t indent = displayWidth(prefix);
    const std::size_t columns = messageColumns();
    std::string lines;
    for (const std::string& line : wrapped(text, columns - std::min(columns, indent))) {
        lines += prefix + line + "\n";
        prefix.assign(indent, ' ');
    }
    return lines;
}

ArtifactCount countOf(const std::vector<FilmArtifact>& artifacts) {
    ArtifactCount count;
    for (const FilmArtifact& artifact : artifacts)
        count.add(artifact);
    return count;
}

} // namespace

std::size_t messageColumns() { return terminalColumns(STDERR_FILENO, anyColumns); }

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

PublishProgress::PublishProgress(const Console& console, const FilmWorkspaceSnapshot& film,
                                 const PublishTarget& target)
    : console_(console), film_(film), target_(target), files_(countOf(exportedFiles(film))) {}

void PublishProgress::showLoaded() const { show("Loaded", fitted(shown(film_.project.title), longestTitle)); }

void PublishProgress::showWarning(const std::string& text) const {
    if (!console_.options().json)
        console_.message(indented(styled(Style::warning, "warning:") + " ", shown(text)));
}

void PublishProgress::begin(PublishStep step) {
    step_ = step;
    isDone_ = false;
    begin_ = std::chrono::steady_clock::now();
    if (step == PublishStep::build)
        progressLine_.emplace(console_);
    else if (step == PublishStep::validate)
        waitingLine_.emplace(console_, "Vistrel checks the film");
    else if (step == PublishStep::import)
        waitingLine_.emplace(console_, "Vistrel imports the film");
}

void PublishProgress::end(PublishStep step, const PublishReceipt& receipt) {
    eraseLine();
    isDone_ = true;
    switch (step) {
    case PublishStep::preflight:
        return;
    case PublishStep::build:
        return show("Verified",
                    countText(files_.files, "file", "files") + ", " + sizeText(files_.bytes) + duration());
    case PublishStep::write:
        if (target_.isStandardOutput())
            show("Written", "to standard output");
        else if (target_.isTemporary())
            show("Written", "nothing but a temporary manifest: this is a dry run");
        else
            showPath("Written", target_.manifest().string());
        if (console_.options().verbose)
            console_.step(std::string(stepColumns, ' ') + styled(Style::dim, receipt.manifestDigest) + "\n");
        return;
    case PublishStep::validate:
        return show("Checked", "Vistrel accepts " + countsText(receipt.validation) + duration());
    case PublishStep::import:
        return show("Imported", countsText(receipt.imported.value_or(VistrelImportReceipt())) + duration());
    }
}

void PublishProgress::verified(const VerificationProgress& progress) {
    if (progressLine_)
        progressLine_->show(progress);
}

void PublishProgress::examined(const ArtifactOutcome& outcome) {
    if (!outcome.sound())
        damaged_.push_back(outcome);
    else if (console_.options().verbose && progressLine_)
        progressLine_->outside([&] { console_.step(fileText(outcome, film_.root, messageColumns(), true)); });
}

void PublishProgress::eraseLine() {
    progressLine_.reset();
    waitingLine_.reset();
}

std::vector<ArtifactOutcome> PublishProgress::damaged() const {
    std::unordered_map<std::string_view, std::size_t> positions;
    for (const FilmArtifact& artifact : film_.project.artifacts)
        positions.emplace(artifact.path, positions.size());
    std::vector<ArtifactOutcome> sorted = damaged_;
    std::ranges::sort(sorted, {},
                      [&](const ArtifactOutcome& outcome) { return positions.at(outcome.artifact.path); });
    return sorted;
}

void PublishProgress::compare(const VistrelHandoff& handoff) {
    const std::optional<VistrelHandoff>& previous = target_.previous();
    if (!previous)
        return;
    const ManifestChanges& changes = changes_.emplace(changesBetween(*previous, handoff));
    showContinuation("Since the last manifest: " + summaryText(changes));
    if (!console_.options().verbose)
        return;
    for (const std::string& line : listLines(changes))
        console_.step(std::string(stepColumns, ' ') + line + "\n");
}

void PublishProgress::show(const std::string& step, const std::string& text) const {
    const std::size_t blanks = stepColumns - std::min(stepColumns, step.size());
    console_.step(indented(styled(Style::good, step) + std::string(blanks, ' '), text));
}

void PublishProgress::showPath(const std::string& step, const std::string& path) const {
    const std::size_t blanks = stepColumns - std::min(stepColumns, step.size());
    console_.step(styled(Style::good, step) + std::string(blanks, ' ') + shownPath(path) + "\n");
}

void PublishProgress::showContinuation(const std::string& text) const {
    console_.step(indented(std::string(stepColumns, ' '), text));
}

std::string PublishProgress::duration() const {
    const auto time =
        std::chrono::duration_cast<std::chrono::seconds>(std::chrono::steady_clock::now() - begin_);
    return time < longStep ? "" : ", in " + elapsedText(time);
}

} // namespace kinovane::tool
