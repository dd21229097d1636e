// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include <kinovane/error.hpp>
#include <kinovane/export.hpp>
#include <kinovane/handoff.hpp>
#include <kinovane/preflight.hpp>
#include <kinovane/run_options.hpp>
#include <kinovane/stop.hpp>
#include <kinovane/task.hpp>
#include <kinovane/workspace.hpp>

/// A publish as one operation: preflight, build, write, dry run and import.
namespace kinovane {

/// The steps of a publish, in their order.
enum class PublishStep {
    preflight, ///< The documents are checked and the importer is looked up; no file of the film is touched.
    build,     ///< Every exported artifact is examined.
    write,     ///< The manifest is stored.
    validate,  ///< The importer checks the manifest in a dry run.
    import,    ///< The importer imports it.
};

/// The cases of PublishError.
struct KINOVANE_EXPORT PublishErrorCases {
    /// Preflight has findings that prevent the publish. Nothing was read or written.
    struct blocked {
        std::vector<PreflightFinding> findings; ///< The blocking ones; with `refuseWarnings` all.
        bool operator==(const blocked&) const = default;
    };
    /// The importer refused the film, in words of its own or with `ok` false in its receipt. The manifest is
    /// written. A refusal in the dry run leaves Vistrel unchanged.
    struct refused {
        PublishStep step = PublishStep::validate;    ///< `validate` or `import`.
        std::string message;                         ///< The importer's words; empty when it gave none.
        std::optional<VistrelImportReceipt> receipt; ///< Where the importer gave one.
        bool operator==(const refused&) const = default;
    };
    /// One of the cases above.
    using Case = std::variant<blocked, refused>;
    /// The message of CaseError::errorDescription.
    static std::string describe(const Case& value);
};

/// Why a film was not published, where its documents or the importer are the reason.
class KINOVANE_EXPORT PublishError final : public CaseError<PublishErrorCases> {
  public:
    using CaseError::CaseError;
    PublishError(const PublishError&) noexcept = default;
    PublishError& operator=(const PublishError&) noexcept = default;
    ~PublishError() override;
};

struct PublishReceipt;

/// The options of a publish. The functions are called on the operation's worker threads, one call at a time;
/// an exception from one of them ends the publish and arrives through the task.
struct KINOVANE_EXPORT PublishOptions {
    std::optional<std::string> exportedAt = {}; ///< As for VistrelHandoffBuilder::build.
    unsigned workers = 1;                       ///< As in HandoffBuildOptions.
    bool dryRun = false;                        ///< Ends after the dry run; nothing is imported.
    bool refuseWarnings = false;                ///< Treats every finding of preflight as blocking.

    /// Ends the publish before the next artifact or step, and ends a running importer as RunOptions::stop
    /// does. The task fails with std::system_error (std::errc::operation_canceled). An import that was
    /// stopped may have changed Vistrel's library.
    StopToken stop = {};

    std::function<void(PublishStep)> onStep = {};                     ///< Called when a step begins.
    std::function<void(const VerificationProgress&)> onProgress = {}; ///< As in HandoffBuildOptions.

    std::function<void(const ArtifactOutcome&)> onOutcome = {}; ///< As in HandoffBuildOptions.
    bool examineAll = false;                                    ///< As in HandoffBuildOptions.

    /// Called when a step is done, with the receipt as far as it is filled: `warnings` after the preflight,
    /// `manifestDigest` after the write, `validation` after the dry run, `imported` after the import. A step
    /// that fails is not done.
    std::function<void(PublishStep, const PublishReceipt&)> onStepDone = {};
};

/// A publish that succeeded. An independent value.
struct KINOVANE_EXPORT PublishReceipt {
    std::filesystem::path manifest;         ///< Where the manifest was written.
    std::string manifestDigest;             ///< Its digest, as VistrelHandoffBuilder::write returned it.
    std::vector<PreflightFinding> warnings; ///< What preflight found.
    VistrelImportReceipt validation;        ///< Of the dry run; `ok` is true.
    std::optional<VistrelImportReceipt> imported; ///< Of the import; `ok` is true. Absent after a dry run.

    bool operator==(const PublishReceipt&) const = default;
};

/// Publishes a workspace: preflight, build, write to `manifest`, dry run, import. The task fails with
/// PublishError, with what `build` and `write` throw, and with FilmToolError when the importer cannot be run,
/// is ended by a signal, ends with a status other than 0 and no words, or sends an unreadable receipt.
///
/// The importer is looked up after the documents are judged and before any media file is read, so that a
/// missing program is reported at once. Whether `manifest` can be written is known only once `write` has done
/// so.
///
/// The importer's standard input is empty. The operation runs on a thread of its own. The arguments are
/// copied.
KINOVANE_EXPORT Task<PublishReceipt> publish(FilmWorkspaceSnapshot snapshot, std::string projectRoot,
                                             std::filesystem::path manifest, VistrelClient importer,
                                             PublishOptions options = PublishOptions());

} // namespace kinovane
