// SPDX-License-Identifier: Apache-2.0

#include <cstring>
#include <filesystem>
#include <new>
#include <string_view>
#include <system_error>
#include <variant>

#include <kinovane/run_options.hpp>
#include <kinovane/user_message.hpp>

#include "tooling/process/program_error.hpp"

namespace kinovane {

namespace {

/// Whether the description of an error consists of the library's fixed words about the film command. A
/// program that failed with a text of its own, and one that was not found, are described in other words.
bool speaksOfFilmCommand(const FilmToolError& error) {
    if (const auto* failed = std::get_if<FilmToolError::commandFailed>(&error.value()))
        return failed->result.stderr.empty();
    return !std::holds_alternative<FilmToolError::executableNotFound>(error.value());
}

/// What failed: the first argument of the constructor of a file system error. The standard gives no access to
/// it, but every implementation has it in `what()`, in front of the reason.
std::string_view operationOf(std::string_view what, std::string_view reason) {
    for (const std::string_view prefix : {"filesystem error: in ", "filesystem error: "})
        if (what.starts_with(prefix)) {
            what.remove_prefix(prefix.size());
            break;
        }
    const std::size_t end = what.find(": " + std::string(reason));
    return end == std::string_view::npos ? std::string_view() : what.substr(0, end);
}

std::string describe(const std::filesystem::filesystem_error& error) {
    const std::string reason = error.code().message();
    std::string text(operationOf(error.what(), reason));
    const auto append = [&](std::string_view separator, std::string_view part) {
        if (!text.empty())
            text += separator;
        text += part;
    };
    if (!error.path1().empty())
        append(": ", error.path1().native());
    if (!error.path2().empty())
        append(" and ", error.path2().native());
    append(": ", reason);
    return text;
}

std::string describe(const RunStopped& error) {
    const std::string program = std::filesystem::path(error.result().executable).filename().string();
    const bool timedOut = error.code() == std::errc::timed_out;
    if (program.empty())
        return timedOut ? "The program was stopped when its time limit was over."
                        : "The program was stopped on request.";
    return program +
           (timedOut ? ": stopped because the time limit was reached" : ": stopped at the user's request");
}

/// The system's words for a signal, such as "Killed".
std::string signalName(int signal) {
    // Both systems keep a text that is not constant in storage of the calling thread.
    const char* name = ::strsignal(signal); // NOLINT(concurrency-mt-unsafe)
    return name == nullptr ? "unknown" : name;
}

/// Whether this is a requested stop, reported without words of its own.
bool isRequestedStop(const std::system_error& error) {
    return error.code() == std::errc::operation_canceled && error.what() == error.code().message();
}

/// "vistrel was ended by signal 9 (Killed)", with the words of the program.
std::string describeSignal(const FilmToolErrorCases::commandFailed& failed, int signal) {
    const std::string text = std::filesystem::path(failed.result.executable).filename().string() +
                             " was ended by signal " + std::to_string(signal) + " (" + signalName(signal) +
                             ")";
    const std::string& words = failed.result.stderr;
    const std::size_t end = words.find_last_not_of(" \t\r\n");
    return text + (end == std::string::npos ? "." : ": " + words.substr(0, end + 1));
}

std::string describe(const ProgramError& error) {
    const auto& [program, signal] = error.details();
    if (const auto* failed = std::get_if<FilmToolError::commandFailed>(&error.value()); failed && signal)
        return describeSignal(*failed, *signal);
    const bool named = !program.empty() && speaksOfFilmCommand(error);
    return (named ? program + ": " : "") + error.errorDescription();
}

} // namespace

std::string userMessage(const std::exception& error) {
    if (const auto* failed = dynamic_cast<const ProgramError*>(&error))
        return describe(*failed);
    if (const auto* failed = dynamic_cast<const std::filesystem::filesystem_error*>(&error))
        return describe(*failed);
    if (const auto* stopped = dynamic_cast<const RunStopped*>(&error))
        return describe(*stopped);
    if (const auto* failed = dynamic_cast<const std::system_error*>(&error);
        failed && isRequestedStop(*failed))
        return "Stopped on request.";
    if (dynamic_cast<const std::bad_alloc*>(&error) != nullptr)
        return "out of memory";
    const std::string_view text = error.what();
    return text.empty() ? "unknown failure" : std::string(text);
}

} // namespace kinovane
