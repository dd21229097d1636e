// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <concepts>
#include <cstddef>
#include <exception>
#include <memory>
#include <system_error>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include <kinovane/export.hpp>
#include <kinovane/task.hpp>

/// Running functions of the application as tasks, and waiting for several tasks.
namespace kinovane {

namespace detail {

/// Runs `operation` on a thread of its own. If no thread can be started, the task fails with what
/// `threadFailure` makes of the reason.
template <class T, class Operation, class ThreadFailure>
Task<T> startOperation(Operation operation, ThreadFailure threadFailure) {
    using State = TaskState<T>;
    struct OperationAction final : TaskAction {
        OperationAction(std::shared_ptr<State> target, Operation&& started)
            : state(std::move(target)), operation(moveOut(started)) {}
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
    const auto error = TaskCore::start(state, std::make_unique<OperationAction>(state, std::move(operation)));
    if (error) {
        state->fail(threadFailure(error));
        TaskCore::finish(state);
    }
    return Task<T>(std::move(state));
}

/// The results of several tasks, in their order. Waits for all of them, also after one has failed; then
/// throws the error of the first that failed.
template <class T>
auto resultsOf(std::vector<Task<T>> tasks) {
    std::exception_ptr error;
    const auto keepFirst = [&] {
        if (!error)
            error = std::current_exception();
    };
    if constexpr (std::is_void_v<T>) {
        for (Task<T>& task : tasks) {
            try {
                task.get();
            } catch (...) {
                keepFirst();
            }
        }
        if (error)
            std::rethrow_exception(error);
    } else {
        std::vector<T> results;
        results.reserve(tasks.size());
        for (Task<T>& task : tasks) {
            try {
                results.push_back(task.get());
            } catch (...) {
                keepFirst();
            }
        }
        if (error)
            std::rethrow_exception(error);
        return results;
    }
}

} // namespace detail

/// Calls `function` on a thread of its own and returns a task of its result, or of the exception that it
/// throws. This is how `load`, `build`, `audit` and `write`, which block, are kept off the interface thread:
///
///     auto task = runInBackground([location] { return FilmProjectLoader::load(location); });
///     task.then(executor, [](Task<FilmWorkspaceSnapshot> loaded) { … });
///
/// The function is moved to the thread and destroyed there. If no thread can be started, the task fails with
/// std::system_error. Throws std::bad_alloc, and what moving the function throws.
template <class Function>
    requires std::invocable<Function>
auto runInBackground(Function function) -> Task<std::invoke_result_t<Function>> {
    return detail::startOperation<std::invoke_result_t<Function>>(
        detail::moveOut(function), [](std::error_code reason) {
            return std::make_exception_ptr(std::system_error(reason, "no thread could be started"));
        });
}

/// A task of the results of all `tasks`, in their order: Task<std::vector<T>>, or Task<void> if T is void. It
/// is done once all of them are, and fails with the error of the first in order that failed.
template <class T>
auto whenAll(std::vector<Task<T>> tasks) {
    return runInBackground(
        [tasks = std::move(tasks)]() mutable { return detail::resultsOf(std::move(tasks)); });
}

/// The same for tasks of different results, none of them void: a task of a std::tuple.
template <class... Results>
    requires(sizeof...(Results) > 0 && (!std::is_void_v<Results> && ...))
Task<std::tuple<Results...>> whenAll(Task<Results>... tasks) {
    return runInBackground([tasks = std::tuple(std::move(tasks)...)]() mutable {
        return std::apply(
            [](auto&... task) {
                (task.wait(), ...); // All of them, before an error leaves this function.
                return std::tuple<Results...>{task.get()...};
            },
            tasks);
    });
}

} // namespace kinovane
