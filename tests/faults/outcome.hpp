// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <system_error>

namespace kinovane::test {

/// The result of an operation.
struct Outcome {
    enum class Kind { result, systemError, projectError, handoffError, toolError, undocumented };

    Kind kind = Kind::undocumented;
    std::string text;     ///< The result, or the error's text.
    std::error_code code; ///< For Kind::systemError.

    bool operator==(const Outcome&) const = default;
};

/// Whether the text of a std::filesystem::filesystem_error names this path. Some standard libraries quote it.
bool namesPath(const std::string& text, const std::filesystem::path& path);

/// Runs an operation that returns its result as text.
Outcome outcomeOf(const std::function<std::string()>& operation);

} // namespace kinovane::test
