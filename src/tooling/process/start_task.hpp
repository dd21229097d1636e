// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <exception>
#include <system_error>
#include <utility>

#include <kinovane/background.hpp>
#include <kinovane/process.hpp>

namespace kinovane {

/// Starts `operation` on a thread of its own. An exception that it throws arrives through the task, and so
/// does the error if no thread can be started (FilmToolError, launchFailed).
template <class T, class Operation>
Task<T> startTask(Operation operation) {
    return detail::startOperation<T>(std::move(operation), [](std::error_code reason) {
        return std::make_exception_ptr(
            FilmToolError(FilmToolError::launchFailed{"no thread could be started: " + reason.message()}));
    });
}

} // namespace kinovane
