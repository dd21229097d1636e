// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <exception>
#include <filesystem>
#include <map>
#include <string>
#include <type_traits>
#include <utility>

#include <kinovane/process.hpp>
#include <kinovane/run_options.hpp>
#include <kinovane/task.hpp>

#include "tooling/process/executable_lookup.hpp"
#include "tooling/process/process_runner.hpp"
#include "tooling/process/program_error.hpp"
#include "tooling/process/run_preparation.hpp"
#include "tooling/process/start_task.hpp"

namespace kinovane {

/// Which program an operation runs, and how.
struct ProgramCall {
    const std::string& executable; ///< Name or path; must outlive the call of startProgram.
    bool isFilmTool = true;        ///< Otherwise an error names the program; see ProgramError.
    RunOptions options = {};
    std::map<std::string, std::string> environment = {}; ///< The operation's own; that of `options` wins.
};

/// Finds a program, runs it and waits for its end on this thread. `arguments` is the list of its arguments,
/// or a function that makes the list from the path at which the program was found. Throws as runSynchronously
/// does.
template <class Arguments>
ProcessResult runProgram(const ExecutableLookup& lookup, Arguments&& arguments, const RunOptions& options) {
    const std::filesystem::path program = lookup.find();
    if constexpr (std::is_invocable_v<Arguments&, const std::filesystem::path&>)
        return runSynchronously(program, arguments(program), options);
    else
        return runSynchronously(program, std::forward<Arguments>(arguments), options);
}

/// Does the same on a thread of its own. The result of the task is what `finish` returns for the program's
/// result.
///
/// PATH and the working directory are those at the time of this call. `prepareArguments` is called on this
/// thread, so that relative locations among the arguments depend on the same working directory; it returns
/// `arguments` as above. A FilmToolError that it throws arrives through the task.
template <class Result, class PrepareArguments, class Finish>
Task<Result> startProgram(ProgramCall call, PrepareArguments prepareArguments, Finish finish) {
    const auto named = [program = call.isFilmTool ? std::string() : call.executable](auto step) {
        try {
            return step();
        } catch (const FilmToolError& error) {
            if (program.empty())
                throw;
            throw ProgramError(error,
                               {std::filesystem::path(program).filename().string(), endingSignal(error)});
        }
    };
    try {
        call.options = preparedOptions(std::move(call.options), std::move(call.environment));
        return startTask<Result>([lookup = named([&] { return ExecutableLookup(call.executable); }), named,
                                  arguments = named(prepareArguments), options = std::move(call.options),
                                  finish = std::move(finish)]() mutable {
            return named([&] { return finish(runProgram(lookup, std::move(arguments), options)); });
        });
    } catch (const std::exception&) {
        return startTask<Result>(
            [error = std::current_exception()]() -> Result { std::rethrow_exception(error); });
    }
}

} // namespace kinovane
