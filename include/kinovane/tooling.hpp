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
#include <kinovane/task.hpp>
#include <kinovane/workspace.hpp>

/// Running the outside programs that do the work.
namespace kinovane {

/// The film tool's answer to `status`: the board of a run. Unlike the project document it gives shots, jobs
/// and artifacts as counts.
struct KINOVANE_EXPORT FilmStatusResponse {
    std::string contractVersion; ///< Kept as read; no value is required.
    std::string runId;
    std::string projectId;
    std::string title;
    std::string status;
    std::string phase;
    std::optional<std::string> nextGate; ///< The approval gate that the run waits for, if any.
    std::vector<std::string> openQuestions;
    std::map<std::string, FilmApproval> approvals;  ///< By gate name.
    std::map<std::string, std::int64_t> taskCounts; ///< By name of a task's state.
    std::int64_t shots = 0;                         ///< How many.
    std::vector<FilmReviewRequest> reviewRequests;
    std::int64_t jobs = 0;      ///< How many.
    std::int64_t artifacts = 0; ///< How many.
    std::vector<FilmIssue> issues;
    FilmProof proof;
    std::string productionMode;
    std::int64_t takesPerShot = 0;
    std::string projectDirectory;             ///< A path.
    std::string runManifest;                  ///< A path.
    std::optional<std::string> reviewPackage; ///< A path, once there is one.

    bool operator==(const FilmStatusResponse&) const = default;
};

/// The film tool's answer to `export-vistrel`.
struct KINOVANE_EXPORT FilmVistrelExportReceipt {
    bool ok = false; ///< False is the tool's refusal; the client hands it on like any other answer.
    std::string contractVersion; ///< Of the written handoff.
    std::string manifest;        ///< Path of the written handoff.
    std::string manifestSha256;
    std::string projectId;
    std::int64_t shots = 0;  ///< How many.
    std::int64_t assets = 0; ///< How many.
    std::int64_t bytes = 0;  ///< Size of all exported files together.
    std::optional<std::string> runId;

    bool operator==(const FilmVistrelExportReceipt&) const = default;
};

/// How to start the coding agent pi on a run, as the film tool tells it.
struct KINOVANE_EXPORT PiAgentLaunchSpec {
    std::vector<std::string> command; ///< The program and its arguments.
    std::string cwd;                  ///< The agent's working directory.
    std::map<std::string, std::string> environment;

    bool operator==(const PiAgentLaunchSpec&) const = default;
};

/// The film tool. Holds nothing but the name of the program; may be copied and used from several threads at
/// once.
///
/// Every operation is one child process with a fixed argument vector, never a shell. It starts at once and
/// runs without a time limit; every failure, a missing program included, arrives through the task as a
/// FilmToolError, or as std::bad_alloc when there is not enough memory, and as nothing else. The child
/// inherits the environment, the working directory and standard input, and no other open file. When
/// descriptor 0 is closed or close-on-exec, its standard input is /dev/null. These are inherited when the
/// child starts, on a worker thread and so perhaps shortly after the call.
class KINOVANE_EXPORT FilmToolClient {
  public:
    /// `executable` is a name or a path, looked up anew at each call, with PATH and the working directory of
    /// the moment at which the call is made.
    explicit FilmToolClient(std::string executable);

    const std::string& executable() const noexcept;

    /// Finds a program. A leading "~" stands for a home directory, which is the user database's and not the
    /// environment's; it is left as it is for a user without one. A text with "/" in it is then a path; any
    /// other name is searched in the directories of PATH and then in /opt/homebrew/bin, /usr/local/bin,
    /// /usr/bin and /bin. Only regular files that the user may execute count.
    ///
    /// Throws FilmToolError: executableNotFound, or launchFailed when the user database or the working
    /// directory is needed and cannot be read. Blocks on the file system and the user database.
    static std::filesystem::path resolveExecutable(const std::string& name);

    /// Runs the program with these arguments. `environment` is added to the inherited environment and wins
    /// over it.
    Task<ProcessResult> run(std::vector<std::string> arguments,
                            std::map<std::string, std::string> environment = {}) const;

    // The commands of the film tool. Locations are passed on as absolute paths, texts as they stand; an
    // absent optional adds nothing to the command line. An empty location, and one that cannot be made
    // absolute because the working directory cannot be read, is refused with launchFailed, and nothing is
    // started.

    /// Plans a new film below `outputDirectory`, which makes its workspace. Gives the location of the run
    /// manifest; a relative one is below the working directory of the moment at which the call is made.
    Task<std::filesystem::path> plan(const std::string& idea, const std::string& title,
                                     std::int64_t durationSeconds,
                                     const std::filesystem::path& outputDirectory,
                                     const std::optional<std::string>& piCommand = std::nullopt) const;

    Task<FilmStatusResponse> status(const std::filesystem::path& runManifest) const;

    /// Records a human approval of a gate.
    Task<void> approve(const std::filesystem::path& runManifest, const std::string& gate,
                       const std::string& note, const std::string& approvedBy) const;

    /// Goes on with the production ("run") until a gate stops it. Provider and model reach the tool as the
    /// environment variables QUEX_FILM_TOOLS_PI_PROVIDER and QUEX_FILM_TOOLS_PI_MODEL.
    Task<ProcessResult> advance(const std::filesystem::path& runManifest,
                                const std::optional<std::string>& piCommand = std::nullopt,
                                const std::optional<std::string>& piProvider = std::nullopt,
                                const std::optional<std::string>& piModel = std::nullopt) const;

    /// Repairs a workspace whose last step was cut off.
    Task<ProcessResult> recover(const std::filesystem::path& runManifest) const;

    /// Archives a shot's take and asks for another one.
    Task<ProcessResult> reroll(const std::filesystem::path& runManifest, const std::string& shotID,
                               const std::string& note) const;

    /// Has the film reviewed. Provider and model as for `advance`.
    Task<ProcessResult> review(const std::filesystem::path& runManifest,
                               const std::optional<std::string>& piCommand = std::nullopt,
                               const std::optional<std::string>& piProvider = std::nullopt,
                               const std::optional<std::string>& piModel = std::nullopt) const;

    /// Has the film tool itself write a handoff for Vistrel, at `output` or where it chooses.
    Task<FilmVistrelExportReceipt>
    exportVistrel(const std::filesystem::path& runManifest,
                  const std::optional<std::filesystem::path>& output = std::nullopt) const;

    /// Asks how to start the coding agent on a run. The tool is told its own absolute path as the plugin
    /// command.
    Task<PiAgentLaunchSpec> agentLaunchSpec(const std::filesystem::path& runManifest,
                                            const std::string& piCommand) const;

    /// The arguments with which the film tool starts its agent, to be shown or launched by the application.
    /// Never fails: an empty location stays empty here and below.
    std::vector<std::string> agentArguments(const std::filesystem::path& runManifest,
                                            const std::optional<std::string>& piCommand = std::nullopt) const;

    /// The arguments with which the film tool prints how to start the agent.
    static std::vector<std::string> agentLaunchArguments(const std::filesystem::path& runManifest,
                                                         const std::string& piCommand,
                                                         const std::string& pluginCommand);

    bool operator==(const FilmToolClient&) const = default;

  private:
    std::string executable_;
};

/// Finding the coding agent pi, which may be on the search path or among the copies that the local agent
/// runtime installed, one directory for each version. Keeps nothing; may be used from several threads at
/// once.
namespace PiExecutableResolver {

/// Where the agent runtime installs its copies: "Library/Application Support/QuexRun/agents/pi" in the
/// current user's home directory, which is the user database's and never the environment's. Empty for a user
/// to whom the database gives no home directory. Throws std::system_error when the database cannot be asked,
/// for instance because no descriptor is left.
KINOVANE_EXPORT std::filesystem::path defaultRoot();

/// Finds a command as FilmToolClient::resolveExecutable does; only the name "pi" is then also looked for
/// among the installed copies. Throws FilmToolError (executableNotFound) and no other: an installed copy that
/// cannot be looked for, because the default root cannot be learned or listed, counts as absent, and
/// `defaultRoot` gives the reason. Blocks on the file system and the user database.
KINOVANE_EXPORT std::filesystem::path resolve(const std::string& command);

/// The absolute locations of the installed copies' executables, newest version first. Versions are compared
/// number by number, so 1.10.0 is newer than 1.9.3; copies of one version keep the order in which the
/// directory lists them. Empty when there are none, when the root cannot be listed, and when it is empty.
/// Never fails; only the default value of `root` may, as `defaultRoot`.
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
