#pragma once

#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

#include <kinovane/task.hpp>
#include <kinovane/tooling.hpp>

namespace kinovane {

/// Starts `operation` on a thread of its own. Whatever it throws arrives through the task, and so does the
/// failure to start a thread (launchFailed).
template <class T, class Operation>
Task<T> startTask(Operation operation) {
    auto state = std::make_shared<detail::TaskState<T>>();
    const auto error =
        detail::TaskCore::start(state, [state, operation = std::move(operation)]() mutable noexcept {
            try {
                if constexpr (std::is_void_v<T>) {
                    operation();
                    state->succeed({});
                } else {
                    state->succeed(operation());
                }
            } catch (...) {
                state->fail(std::current_exception());
            }
        });
    if (error) {
        state->fail(std::make_exception_ptr(
            FilmToolError(FilmToolError::launchFailed{"no thread could be started: " + error.message()})));
        state->finish();
    }
    return Task<T>(std::move(state));
}

} // namespace kinovane
