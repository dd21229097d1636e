// SPDX-License-Identifier: Apache-2.0

#include "session/output.hpp"

#include <cerrno>
#include <filesystem>
#include <system_error>

#include <unistd.h>

namespace kinovane::tool {

namespace {

/// The error number, or 0 when all is written. Unbuffered, so that a failure is reported here and not when
/// the program ends.
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

} // namespace

void printResult(std::string_view text) {
    if (const int error = writeAll(STDOUT_FILENO, text))
        throw std::filesystem::filesystem_error("cannot write", "standard output",
                                                std::error_code(error, std::generic_category()));
}

void printMessage(std::string_view text) noexcept { writeAll(STDERR_FILENO, text); }

} // namespace kinovane::tool
