// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <exception>
#include <memory>
#include <type_traits>
#include <utility>

#include <kinovane/process.hpp>
#include <kinovane/task.hpp>

namespace kinovane {

/// Starts `operation` on a thread of its own. An exception that it throws arrives through the task, and so
/// does the error if no thread can be started (FilmToolError, launchFailed).
template <class T, class Operation>
Task<T> startTask(Operation operation) {
    using State = detail::TaskState<T>;
    struct OperationAction final : detail::TaskAction {
        OperationAction(std::shared_ptr<State> target, Operation&& started)
            : state(std::move(target)), operation(std::move(started)) {}
        void run() noexcept override {
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
        }
        std::shared_ptr<State> state;
        Operation operation;
    };
    auto state = std::make_shared<State>();
    const auto error =
        detail::TaskCore::start(state, std::make_unique<OperationAction>(state, std::move(operation)));
    if (error) {
        state->fail(std::make_exception_ptr(
            FilmToolError(FilmToolError::launchFailed{"no thread could be started: " + error.message()})));
        detail::TaskCore::finish(state);
    }
    return Task<T>(std::move(state));
}

} // namespace kinovane
