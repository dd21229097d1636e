// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
// <cstdio> defines `stdout` and `stderr` as macros, and ProcessResult has members of these names. It is
// included here so that the macros have the same expansion in every source file that uses the members.
#include <cstdio>
#include <string>
#include <variant>
#include <vector>

#include <kinovane/error.hpp>
#include <kinovane/export.hpp>

/// The result of an external program, and the error of every operation that runs one.
namespace kinovane {

/// The result of a child process that has ended.
struct KINOVANE_EXPORT ProcessResult {
    std::string executable;             ///< Absolute path of the program.
    std::vector<std::string> arguments; ///< Without the program itself.
    std::int32_t exitCode = 0;          ///< Exit status, or the number of the signal that ended the program.
    std::string stdout; ///< All of standard output. Bytes that are not UTF-8 are replaced by U+FFFD.
    std::string stderr; ///< All of standard error, with the same replacement.

    /// Whether `exitCode` is 0.
    bool succeeded() const noexcept;

    bool operator==(const ProcessResult&) const = default;
};

/// The cases of FilmToolError.
struct KINOVANE_EXPORT FilmToolErrorCases {
    /// No executable file was found. Nothing was started.
    struct executableNotFound {
        std::string name; ///< The name or path as the caller passed it.
        bool operator==(const executableNotFound&) const = default;
    };
    /// The program could not be started; or it was started, and its output or exit status could not be read.
    /// In the second case the message says that the program was started. The caller should then check the
    /// effect of a command such as `approve` before repeating it.
    struct launchFailed {
        std::string message; ///< The program, the call that failed and the reason.
        bool operator==(const launchFailed&) const = default;
    };
    /// The exit status is not 0.
    struct commandFailed {
        ProcessResult result; ///< How the program ended, and its output.
        bool operator==(const commandFailed&) const = default;
    };
    /// The program's reply is not the expected JSON document.
    struct invalidJSON {
        std::string message; ///< What is wrong in the reply, and where.
        bool operator==(const invalidJSON&) const = default;
    };
    /// One of the cases above.
    using Case = std::variant<executableNotFound, launchFailed, commandFailed, invalidJSON>;
    /// The message of CaseError::errorDescription.
    static std::string describe(const Case& value);
};

/// Why an external program gave no result.
class KINOVANE_EXPORT FilmToolError : public CaseError<FilmToolErrorCases> {
  public:
    using CaseError::CaseError;
    FilmToolError(const FilmToolError&) noexcept = default;
    FilmToolError& operator=(const FilmToolError&) noexcept = default;
    ~FilmToolError() override;
};

} // namespace kinovane
