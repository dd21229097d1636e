// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include <kinovane/handoff.hpp>
#include <kinovane/publish.hpp>
#include <kinovane/workspace.hpp>

#include "commands/manifest_changes.hpp"
#include "commands/publish_target.hpp"
#include "film/workspace_summary.hpp"
#include "session/console.hpp"
#include "terminal/progress_line.hpp"
#include "terminal/waiting_line.hpp"

namespace kinovane::tool {

/// Follows the steps of a publish: shows each one on standard error when it is done, and knows how far the
/// publish came. Its functions are called one at a time.
class PublishProgress {
  public:
    /// The arguments must outlive this object.
    PublishProgress(const Console& console, const FilmWorkspaceSnapshot& film, const PublishTarget& target);

    void showLoaded() const;
    void showWarning(const std::string& text) const;

    void begin(PublishStep step);
    void end(PublishStep step, const PublishReceipt& receipt);
    void verified(const VerificationProgress& progress);
    void examined(const ArtifactOutcome& outcome);

    /// Erases the line that shows progress.
    void eraseLine();

    /// The step that was begun last, and whether it is done.
    PublishStep step() const { return step_; }
    bool isDone() const { return isDone_; }

    /// The files that are handed over, with their recorded sizes.
    const ArtifactCount& files() const { return files_; }

    /// The files that are not sound, in the project's order.
    std::vector<ArtifactOutcome> damaged() const;

    /// What changed since the previous manifest. Absent without one, and before the manifest is written.
    const std::optional<ManifestChanges>& changes() const { return changes_; }

    /// Compares the new manifest with the previous one and shows the result.
    void compare(const VistrelHandoff& handoff);

  private:
    void show(const std::string& step, const std::string& text) const;
    void showPath(const std::string& step, const std::string& path) const; ///< Not wrapped, to be copied.
    void showContinuation(const std::string& text) const;
    std::string duration() const;

    const Console& console_;
    const FilmWorkspaceSnapshot& film_;
    const PublishTarget& target_;
    ArtifactCount files_;
    PublishStep step_ = PublishStep::preflight;
    bool isDone_ = false;
    std::chrono::steady_clock::time_point begin_;
    std::vector<ArtifactOutcome> damaged_;
    std::optional<ManifestChanges> changes_;
    std::optional<ProgressLine> progressLine_;
    std::optional<WaitingLine> waitingLine_;
};

/// The width of the terminal that standard error is connected to; no limit without one.
std::size_t messageColumns();

/// "2 scenes, 7 shots, 57 files", as far as the receipt counts them; otherwise "the film".
std::string countsText(const VistrelImportReceipt& receipt);

} // namespace kinovane::tool
