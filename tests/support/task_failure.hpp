// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <optional>
#include <stdexcept>
#include <string>

#include <kinovane/tooling.hpp>

namespace kinovane::test {

/// The error of a task; absent when the task has a result.
template <class T>
std::optional<FilmToolError> possibleErrorOf(Task<T> task) {
    try {
        static_cast<void>(task.get());
    } catch (const FilmToolError& error) {
        return error;
    }
    return std::nullopt;
}

/// The error of a task that must fail.
template <class T>
FilmToolError errorOf(Task<T> task) {
    if (const auto error = possibleErrorOf(std::move(task)))
        return *error;
    throw std::logic_error("the operation succeeded");
}

/// The error description; empty when the task has a result.
template <class T>
std::string failureOf(Task<T> task) {
    const auto error = possibleErrorOf(std::move(task));
    return error ? error->errorDescription() : "";
}

} // namespace kinovane::test
