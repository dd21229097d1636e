// SPDX-License-Identifier: Apache-2.0

#include "session/exit_status.hpp"

#include <exception>
#include <filesystem>
#include <new>
#include <string>
#include <string_view>
#include <system_error>

#include <kinovane/handoff.hpp>
#include <kinovane/json.hpp>
#include <kinovane/publish.hpp>
#include <kinovane/tooling.hpp>
#include <kinovane/workspace.hpp>

#include "arguments/command_line.hpp"
#include "terminal/human_text.hpp"
#include "session/output.hpp"
#include "commands/publish.hpp"

namespace kinovane::tool {

namespace {

/// The paths and the message of the system, without the name of the failed call, which means nothing to a
/// film maker.
std::string describe(const std::filesystem::filesystem_error& error) {
    std::string text;
    if (!error.path1().empty())
        text += error.path1().string() + ": ";
    if (!error.path2().empty())
        text += error.path2().string() + ": ";
    return text + error.code().message();
}

ExitStatus report(ExitStatus status, std::string_view description) {
    std::string text = "kinovane: " + std::string(description);
    // Error output of an external program usually ends with a line break.
    if (text.back() != '\n')
        text += '\n';
    printMessage(text);
    return status;
}

/// One line for each finding that prevents the handoff.
ExitStatus reportFindings(const PublishError& error) {
    const auto* blocked = std::get_if<PublishError::blocked>(&error.value());
    if (blocked == nullptr)
        return report(ExitStatus::refused, error.errorDescription());
    for (const PreflightFinding& finding : blocked->findings)
        report(ExitStatus::handoff, plainText(finding.text));
    return ExitStatus::handoff;
}

ExitStatus reportByClass() {
    try {
        throw;
    } catch (const UsageError& error) {
        return report(ExitStatus::usage, error.what());
    } catch (const FilmProjectError& error) {
        return report(ExitStatus::workspace, error.errorDescription());
    } catch (const PublishError& error) {
        return reportFindings(error);
    } catch (const VistrelHandoffError& error) {
        return report(ExitStatus::handoff, error.errorDescription());
    } catch (const JSONEncodingError& error) {
        return report(ExitStatus::handoff, error.what());
    } catch (const FilmToolError& error) {
        return report(ExitStatus::program, error.errorDescription());
    } catch (const ImportRefused& error) {
        return report(ExitStatus::refused, error.what());
    } catch (const std::filesystem::filesystem_error& error) {
        return report(ExitStatus::fileSystem, describe(error));
    } catch (const std::system_error& error) {
        return report(ExitStatus::fileSystem, error.code().message());
    } catch (const std::bad_alloc&) {
        return report(ExitStatus::unexpected, "there is not enough memory");
    } catch (const std::exception& error) {
        return report(ExitStatus::unexpected, error.what());
    }
}

} // namespace

ExitStatus reportCurrentException() noexcept {
    try {
        return reportByClass();
    } catch (...) { // No memory for the message; the exit status still reports the failure.
        return ExitStatus::unexpected;
    }
}

} // namespace kinovane::tool
