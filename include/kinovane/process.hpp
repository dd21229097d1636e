// SPDX-License-Identifier: Apache-2.0

#pragma once

// <cstdio> comes first on purpose: `stdout` and `stderr` are macros there, and ProcessResult has members of
// these names. Every user of this header thus sees one and the same expansion of them.
#include <cstdint>
#include <cstdio>
#include <string>
#include <variant>
#include <vector>

#include <kinovane/error.hpp>
#include <kinovane/export.hpp>

/// The result of a run of an external program, and the error of every operation that runs one.
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
    /// The program could not be started, and nothing is left of the attempt; or it ran, and its output or
    /// exit status was lost. In the second case the message says that the program was started: before a
    /// command such as `approve` is repeated, its effect has to be looked at.
    struct launchFailed {
        std::string message; ///< Which program, and the call that failed with its reason.
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

} // namespace kinovane
