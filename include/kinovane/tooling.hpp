// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <kinovane/export.hpp>
#include <kinovane/json.hpp>
#include <kinovane/process.hpp>
#include <kinovane/run_options.hpp>
#include <kinovane/task.hpp>
#include <kinovane/workspace.hpp>

/// The film tool and the coding agent pi.
namespace kinovane {

/// The film tool's reply to `status`. Unlike the project document, it holds shots, jobs and artifacts as
/// counts.
struct KINOVANE_EXPORT FilmStatusResponse {
    std::string contractVersion;                    ///< Kept as read; no value is required.
    std::string runId;                              ///< The identifier of the run.
    std::string projectId;                          ///< The identifier of the project.
    std::string title;                              ///< The title of the film.
    std::string status;                             ///< Status word of the run.
    std::string phase;                              ///< Phase word: how far production has come.
    std::optional<std::string> nextGate;            ///< The approval gate that the run waits for, if any.
    std::vector<std::string> openQuestions;         ///< Questions to the user that are still open.
    std::map<std::string, FilmApproval> approvals;  ///< By gate name.
    std::map<std::string, std::int64_t> taskCounts; ///< Number of tasks by state.
    std::int64_t shots = 0;                         ///< Count.
    std::vector<FilmReviewRequest> reviewRequests;  ///< The review notes on shots.
    std::int64_t jobs = 0;                          ///< Count.
    std::int64_t artifacts = 0;                     ///< Count.
    std::vector<FilmIssue> issues;                  ///< The open problems.
    FilmProof proof;                                ///< Which of the ten production steps are complete.
    std::string productionMode;                     ///< The production mode, a word of the film tool.
    std::int64_t takesPerShot = 0;                  ///< How many takes are made of each shot. A count.
    std::string projectDirectory;                   ///< A path.
    std::string runManifest;                        ///< A path.
    std::optional<std::string> reviewPackage;       ///< A path; absent until the review package exists.

    bool operator==(const FilmStatusResponse&) const = default;
};

/// The film tool's reply to `export-vistrel`.
struct KINOVANE_EXPORT FilmVistrelExportReceipt {
    bool ok = false;             ///< False if the tool refused. The client does not treat this as an error.
    std::string contractVersion; ///< Of the written handoff.
    std::string manifest;        ///< Path of the written handoff.
    std::string manifestSha256;  ///< The digest of the written handoff, as text.
    std::string projectId;       ///< The identifier of the project.
    std::int64_t shots = 0;      ///< Count.
    std::int64_t assets = 0;     ///< Count.
    std::int64_t bytes = 0;      ///< Total size of the exported files, in bytes.
    std::optional<std::string> runId; ///< The identifier of the run, where the tool reports one.

    bool operator==(const FilmVistrelExportReceipt&) const = default;
};

/// The film tool's reply to `agent --print-command`: how to start the coding agent pi on a run.
struct KINOVANE_EXPORT PiAgentLaunchSpec {
    std::vector<std::string> command;               ///< The program and its arguments.
    std::string cwd;                                ///< The agent's working directory.
    std::map<std::string, std::string> environment; ///< The variables to set for the agent.

    bool operator==(const PiAgentLaunchSpec&) const = default;
};

/// Runs the film tool. Holds only the name of the program; may be copied, and used on several threads at the
/// same time.
///
/// Every operation starts one child process with a list of arguments, never through a shell. Every failure,
/// also that of a missing program, arrives through the task: as FilmToolError, as run_options.hpp states for
/// a run that was stopped and for invalid options, or as std::bad_alloc if memory runs out.
///
/// By default the child inherits environment, working directory and standard input, and no other descriptor.
/// If descriptor 0 is closed or close-on-exec, its standard input is /dev/null. All these are read on the
/// operation's thread when the child is started, which may be shortly after the call returns.
class KINOVANE_EXPORT FilmToolClient {
  public:
    /// `executable` is a name or a path. Every call looks it up with PATH and the working directory at the
    /// time of the call.
    explicit FilmToolClient(std::string executable);

    /// The name or path, as it was given.
    const std::string& executable() const noexcept;

    /// Returns the absolute path of a program.
    ///
    /// "~" at the beginning of `name` is replaced by the home directory of the current user, and "~user" by
    /// that of the user, as the user database has them; the environment's HOME is ignored. If there is no
    /// such directory, the text is left as it is. A text that then holds "/" is a path. Any other is searched
    /// in the directories of PATH, and then in /opt/homebrew/bin, /usr/local/bin, /usr/bin and /bin. Only
    /// regular files that the current user may execute are found.
    ///
    /// Throws FilmToolError: executableNotFound, or launchFailed if the user database or the working
    /// directory is needed and cannot be read. Blocks on the file system and the user database.
    static std::filesystem::path resolveExecutable(const std::string& name);

    /// Runs the program with these arguments. `environment` is added to the inherited environment and
    /// replaces variables of the same names.
    Task<ProcessResult> run(std::vector<std::string> arguments,
                            std::map<std::string, std::string> environment = {},
                            RunOptions options = RunOptions()) const;

    // The commands of the film tool. Locations are passed as absolute paths and texts unchanged; an absent
    // optional adds nothing to the arguments. If a location is empty, or is relative and the working
    // directory cannot be read, the task fails with launchFailed and nothing is started.

    /// Plans a new film. The tool creates the workspace below `outputDirectory`. The task returns the
    /// location of the run manifest; a relative path in the reply is relative to the working directory at the
    /// time of the call.
    Task<std::filesystem::path> plan(const std::string& idea, const std::string& title,
                                     std::int64_t durationSeconds,
                                     const std::filesystem::path& outputDirectory,
                                     const std::optional<std::string>& piCommand = std::nullopt,
                                     RunOptions options = RunOptions()) const;

    /// Reads the status of a run.
    Task<FilmStatusResponse> status(const std::filesystem::path& runManifest,
                                    RunOptions options = RunOptions()) const;

    /// Records the approval of a gate. The tool's output is ignored.
    Task<void> approve(const std::filesystem::path& runManifest, const std::string& gate,
                       const std::string& note, const std::string& approvedBy,
                       RunOptions options = RunOptions()) const;

    /// Continues the production until the next gate; the tool's command is `run`. Provider and model are
    /// passed in the environment variables QUEX_FILM_TOOLS_PI_PROVIDER and QUEX_FILM_TOOLS_PI_MODEL.
    Task<ProcessResult> advance(const std::filesystem::path& runManifest,
                                const std::optional<std::string>& piCommand = std::nullopt,
                                const std::optional<std::string>& piProvider = std::nullopt,
                                const std::optional<std::string>& piModel = std::nullopt,
                                RunOptions options = RunOptions()) const;

    /// Recovers a workspace whose last step was interrupted.
    Task<ProcessResult> recover(const std::filesystem::path& runManifest,
                                RunOptions options = RunOptions()) const;

    /// Requests another take of a shot. The tool archives the present one.
    Task<ProcessResult> reroll(const std::filesystem::path& runManifest, const std::string& shotID,
                               const std::string& note, RunOptions options = RunOptions()) const;

    /// Runs a review of the film. Provider and model are passed as for `advance`.
    Task<ProcessResult> review(const std::filesystem::path& runManifest,
                               const std::optional<std::string>& piCommand = std::nullopt,
                               const std::optional<std::string>& piProvider = std::nullopt,
                               const std::optional<std::string>& piModel = std::nullopt,
                               RunOptions options = RunOptions()) const;

    /// Runs the tool's own export for Vistrel. Without `output` the tool chooses where to write the handoff.
    Task<FilmVistrelExportReceipt>
    exportVistrel(const std::filesystem::path& runManifest,
                  const std::optional<std::filesystem::path>& output = std::nullopt,
                  RunOptions options = RunOptions()) const;

    /// Reads how to start the coding agent on a run. The tool's own absolute path is passed as the plugin
    /// command.
    Task<PiAgentLaunchSpec> agentLaunchSpec(const std::filesystem::path& runManifest,
                                            const std::string& piCommand,
                                            RunOptions options = RunOptions()) const;

    /// Returns the arguments with which the film tool starts its agent, for the application to show or run.
    /// Never fails: an empty location is passed as an empty argument, and a relative one unchanged if the
    /// working directory cannot be read.
    std::vector<std::string> agentArguments(const std::filesystem::path& runManifest,
                                            const std::optional<std::string>& piCommand = std::nullopt) const;

    /// Returns the arguments with which the film tool prints how to start the agent. Never fails, as above.
    static std::vector<std::string> agentLaunchArguments(const std::filesystem::path& runManifest,
                                                         const std::string& piCommand,
                                                         const std::string& pluginCommand);

    bool operator==(const FilmToolClient&) const = default;

  private:
    std::string executable_;
};

/// Finds the coding agent pi, either on the search path or among the copies that the local agent runtime
/// installed, which have one directory for each version. Has no state; may be used on several threads at the
/// same time.
namespace PiExecutableResolver {

/// Returns the directory in which the agent runtime installs its copies: "Library/Application
/// Support/QuexRun/agents/pi" below the current user's home directory in the user database; the environment's
/// HOME is ignored. Empty if the database holds no home directory for the user. Throws std::system_error if
/// the database cannot be read, for instance because no descriptor is left.
KINOVANE_EXPORT std::filesystem::path defaultRoot();

/// Returns the path of `command`, found as by FilmToolClient::resolveExecutable. If `command` is "pi" and is
/// not found, returns the first of `bundledCandidates()`.
///
/// Throws FilmToolError, always with the case executableNotFound. If the default root cannot be determined or
/// listed, there are no installed copies; `defaultRoot` throws the reason. Blocks on the file system and the
/// user database.
KINOVANE_EXPORT std::filesystem::path resolve(const std::string& command);

/// Returns the absolute paths of the installed copies' executables, newest version first. Versions are
/// compared number by number, so that 1.10.0 is newer than 1.9.3. Copies of the same version keep the order
/// in which the directory lists them. Empty if there are none, and if the root is empty or cannot be listed.
/// Never fails, except that the default argument may throw as `defaultRoot` does.
KINOVANE_EXPORT std::vector<std::filesystem::path>
bundledCandidates(const std::filesystem::path& root = defaultRoot());

} // namespace PiExecutableResolver

template <>
inline constexpr JSONForm jsonForm<FilmStatusResponse> = JSONForm::readingAndWriting;
template <>
inline constexpr JSONForm jsonForm<FilmVistrelExportReceipt> = JSONForm::readingAndWriting;
template <>
inline constexpr JSONForm jsonForm<PiAgentLaunchSpec> = JSONForm::readingAndWriting;

} // namespace kinovane
