// SPDX-License-Identifier: Apache-2.0

#include "session/console.hpp"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

#include <sys/ioctl.h>
#include <unistd.h>

#include <boost/json/value.hpp>

#include "json/json_output.hpp"
#include "terminal/style.hpp"

namespace kinovane::tool {

namespace {

constexpr std::size_t columnsWithoutTerminal = 100;
constexpr std::size_t fewestColumns = 40;

std::string_view environmentVariable(const char* name) {
    const char* value = std::getenv(name); // NOLINT(concurrency-mt-unsafe): nothing changes the environment
    return value == nullptr ? std::string_view() : std::string_view(value);
}

bool isDumbTerminal() { return environmentVariable("TERM") == "dumb"; }

bool wantsColor(ColorMode mode, int descriptor) {
    if (mode != ColorMode::automatic)
        return mode == ColorMode::always;
    return ::isatty(descriptor) == 1 && environmentVariable("NO_COLOR").empty() && !isDumbTerminal();
}

void writeResult(std::string_view text) {
    if (const int error = writeAll(STDOUT_FILENO, text))
        throw std::filesystem::filesystem_error("cannot write", "standard output",
                                                std::error_code(error, std::generic_category()));
}

} // namespace

int writeAll(int descriptor, std::string_view text) noexcept {
    while (!text.empty()) {
        const ssize_t count = ::write(descriptor, text.data(), text.size());
        if (count >= 0)
            text.remove_prefix(static_cast<std::size_t>(count));
        else if (errno != EINTR)
            return errno;
    }
    return 0;
}

std::size_t terminalColumns(int descriptor, std::size_t otherwise) noexcept {
    winsize size{};
    if (::ioctl(descriptor, TIOCGWINSZ, &size) != 0 || size.ws_col == 0)
        return otherwise;
    return size.ws_col;
}

Console::Console(const CommonOptions& options)
    : options_(options), colorOfResults_(wantsColor(options.color, STDOUT_FILENO)),
      colorOfMessages_(wantsColor(options.color, STDERR_FILENO)) {}

std::size_t Console::columns() const noexcept {
    return std::max(terminalColumns(STDOUT_FILENO, columnsWithoutTerminal), fewestColumns);
}

void Console::result(std::string_view text) const { writeResult(rendered(text, colorOfResults_)); }

void Console::result(const boost::json::value& document) const { writeResult(jsonLine(document)); }

void Console::bytes(std::string_view bytes) const { writeResult(bytes); }

void Console::step(std::string_view text) const noexcept {
    if (!options_.json && !options_.quiet)
        message(text);
}

void Console::message(std::string_view text) const noexcept {
    try {
        writeAll(STDERR_FILENO, rendered(text, colorOfMessages_));
    } catch (...) {
        writeAll(STDERR_FILENO, "kinovane: out of memory\n");
    }
}

void Console::message(const boost::json::value& document) const noexcept {
    try {
        writeAll(STDERR_FILENO, jsonLine(document));
    } catch (...) {
        writeAll(STDERR_FILENO, "{\"error\":\"out of memory\"}\n");
    }
}

bool Console::showsProgressLine() const noexcept {
    if (options_.json || options_.quiet || options_.progress != ProgressMode::automatic)
        return false;
    return ::isatty(STDERR_FILENO) == 1 && !isDumbTerminal() && ::tcgetpgrp(STDERR_FILENO) == ::getpgrp();
}

} // namespace kinovane::tool
