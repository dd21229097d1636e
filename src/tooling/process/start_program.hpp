// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <exception>
#include <filesystem>
#include <map>
#include <string>
#include <type_traits>
#include <utility>

#include <kinovane/process.hpp>
#include <kinovane/task.hpp>

#include "tooling/process/executable_lookup.hpp"
#include "tooling/process/process_runner.hpp"
#include "tooling/process/start_task.hpp"

namespace kinovane {

/// Finds a program, runs it and waits for its end on this thread. `arguments` is the list of its arguments,
/// or a function that makes the list from the path at which the program was found. Throws FilmToolError.
template <class Arguments>
ProcessResult runProgram(const ExecutableLookup& lookup, Arguments&& arguments,
                         const std::map<std::string, std::string>& environment) {
    const std::filesystem::path program = lookup.find();
    if constexpr (std::is_invocable_v<Arguments&, const std::filesystem::path&>)
        return runSynchronously(program, arguments(program), environment);
    else
        return runSynchronously(program, std::forward<Arguments>(arguments), environment);
}

/// Does the same on a thread of its own. The result of the task is what `finish` returns for the program's
/// result.
///
/// PATH and the working directory are those at the time of this call. `prepareArguments` is called on this
/// thread, so that relative locations among the arguments depend on the same working directory; it returns
/// `arguments` as above. A FilmToolError that it throws arrives through the task.
template <class Result, class PrepareArguments, class Finish>
Task<Result> startProgram(const std::string& executable, PrepareArguments prepareArguments,
                          std::map<std::string, std::string> environment, Finish finish) {
    try {
        return startTask<Result>([lookup = ExecutableLookup(executable), arguments = prepareArguments(),
                                  environment = std::move(environment),
                                  finish = std::move(finish)]() mutable {
            return finish(runProgram(lookup, std::move(arguments), environment));
        });
    } catch (const FilmToolError&) {
        return startTask<Result>(
            [error = std::current_exception()]() -> Result { std::rethrow_exception(error); });
    }
}

} // namespace kinovane
