// SPDX-License-Identifier: Apache-2.0

#include "session/failure.hpp"

#include <exception>
#include <filesystem>
#include <new>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include <boost/json/object.hpp>
#include <boost/json/value.hpp>

#include <kinovane/handoff.hpp>
#include <kinovane/json.hpp>
#include <kinovane/publish.hpp>
#include <kinovane/tooling.hpp>
#include <kinovane/user_message.hpp>
#include <kinovane/workspace.hpp>

#include "session/interruption.hpp"
#include "terminal/style.hpp"

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

Failure failureOf(const PublishError& error) {
    const bool refused = std::holds_alternative<PublishError::refused>(error.value());
    return {refused ? ExitStatus::refused : ExitStatus::handoff, userMessage(error)};
}

/// The word for a status in JSON.
std::string_view nameOf(ExitStatus status) {
    switch (status) {
    case ExitStatus::success:
        return "success";
    case ExitStatus::unexpected:
        return "unexpected";
    case ExitStatus::usage:
        return "usage";
    case ExitStatus::workspace:
        return "workspace";
    case ExitStatus::handoff:
        return "handoff";
    case ExitStatus::program:
        return "program";
    case ExitStatus::fileSystem:
        return "fileSystem";
    case ExitStatus::refused:
        return "refused";
    }
    return "interrupted";
}

} // namespace

bool isRequestedStop(const std::system_error& error) noexcept {
    return error.code() == std::errc::operation_canceled && Interruption::signal() != 0;
}

Failure currentFailure() {
    try {
        throw;
    } catch (const UsageError& error) {
        return {ExitStatus::usage, error.what()};
    } catch (const CommandError& error) {
        return {error.status(), error.what(), error.details()};
    } catch (const FilmProjectError& error) {
        return {ExitStatus::workspace, userMessage(error)};
    } catch (const PublishError& error) {
        return failureOf(error);
    } catch (const VistrelHandoffError& error) {
        return {ExitStatus::handoff, userMessage(error)};
    } catch (const JSONEncodingError& error) {
        return {ExitStatus::handoff, userMessage(error)};
    } catch (const FilmToolError& error) {
        return {ExitStatus::program, userMessage(error)};
    } catch (const std::filesystem::filesystem_error& error) {
        return {ExitStatus::fileSystem, describe(error)};
    } catch (const std::system_error& error) {
        if (isRequestedStop(error))
            return {statusOfSignal(Interruption::signal()), "Stopped."};
        return {ExitStatus::fileSystem, error.code().message()};
    } catch (const std::bad_alloc&) {
        return {ExitStatus::unexpected, "there is not enough memory"};
    } catch (const std::exception& error) {
        return {ExitStatus::unexpected, userMessage(error)};
    }
}

ExitStatus reportCurrentException(const Console& console) noexcept {
    try {
        const Failure failure = currentFailure();
        if (console.options().json) {
            boost::json::object error{{"kind", nameOf(failure.status)},
                                      {"status", static_cast<int>(failure.status)},
                                      {"message", rendered(failure.message, false)}};
            error.insert(failure.details.begin(), failure.details.end());
            console.message(
                boost::json::value(boost::json::object{{"version", 1}, {"error", std::move(error)}}));
            return failure.status;
        }
        std::string text = "kinovane: " + failure.message;
        // Error output of an external program usually ends with a line break.
        if (text.back() != '\n')
            text += '\n';
        console.message(text);
        return failure.status;
    } catch (...) { // No memory for the message; the exit status still reports the failure.
        return ExitStatus::unexpected;
    }
}

} // namespace kinovane::tool
