#pragma once

// <cstdio> comes first on purpose: `stdout` and `stderr` are macros there, and ProcessResult has members of
// these names. Every user of this header thus sees one and the same expansion of them.
#include <cstdio>

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <variant>
#include <vector>

#include <kinovane/error.hpp>
#include <kinovane/export.hpp>
#include <kinovane/json.hpp>
#include <kinovane/task.hpp>
#include <kinovane/workspace.hpp>

/// Running the outside programs that do the work.
namespace kinovane {

/// One finished child process.
struct KINOVANE_EXPORT ProcessResult {
    std::string executable;             ///< Path of the program that ran.
    std::vector<std::string> arguments; ///< Without the program itself.
    std::int32_t exitCode = 0;          ///< Exit status, or the number of the signal that ended the program.
    std::string stdout; ///< All of standard output; bytes that are not UTF-8 are replaced by U+FFFD.
    std::string stderr; ///< All of standard error, likewise.

    /// Whether `exitCode` is 0.
    bool succeeded() const noexcept;

    bool operator==(const ProcessResult&) const = default;
};

/// The cases of FilmToolError.
struct KINOVANE_EXPORT FilmToolErrorCases {
    /// No executable file of this name was found. Nothing was started.
    struct executableNotFound {
        std::string name; ///< As the caller gave it.
        bool operator==(const executableNotFound&) const = default;
    };
    /// The program could not be started; nothing is left of the attempt.
    struct launchFailed {
        std::string message;
        bool operator==(const launchFailed&) const = default;
    };
    /// The program ended with a status other than 0.
    struct commandFailed {
        ProcessResult result;
        bool operator==(const commandFailed&) const = default;
    };
    /// The program's answer could not be read.
    struct invalidJSON {
        std::string message;
        bool operator==(const invalidJSON&) const = default;
    };
    using Case = std::variant<executableNotFound, launchFailed, commandFailed, invalidJSON>;
    static std::string describe(const Case& value);
};

/// Why an outside program did not give its answer.
class KINOVANE_EXPORT FilmToolError final : public CaseError<FilmToolErrorCases> {
  public:
    using CaseError::CaseError;
    FilmToolError(const FilmToolError&) noexcept = default;
    FilmToolError& operator=(const FilmToolError&) noexcept = default;
    ~FilmToolError() override;
};

/// The film tool. Holds nothing but the name of the program; may be copied and used from several threads at
/// once.
///
/// Every operation is one child process with a fixed argument vector, never a shell. It starts at once and
/// runs without a time limit; every failure, a missing program included, arrives through the task as a
/// FilmToolError. The child inherits standard input, the environment and the working directory, and no other
/// open file.
class KINOVANE_EXPORT FilmToolClient {
  public:
    /// `executable` is a name or a path, looked up anew at each call.
    explicit FilmToolClient(std::string executable);

    const std::string& executable() const noexcept;

    /// Finds a program. A leading "~" stands for a home directory. A text with "/" in it is then a path; any
    /// other name is searched in the directories of PATH and then in /opt/homebrew/bin, /usr/local/bin,
    /// /usr/bin and /bin. Only regular files that the user may execute count.
    ///
    /// Throws FilmToolError (executableNotFound). Blocks on the file system.
    static std::filesystem::path resolveExecutable(const std::string& name);

    /// Runs the program with these arguments. `environment` is added to the inherited environment and wins
    /// over it.
    Task<ProcessResult> run(std::vector<std::string> arguments,
                            std::map<std::string, std::string> environment = {}) const;

    bool operator==(const FilmToolClient&) const = default;

  private:
    std::string executable_;
};

} // namespace kinovane
