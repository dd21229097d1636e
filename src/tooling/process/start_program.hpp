// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <exception>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <utility>

#include <kinovane/process.hpp>

#include "tooling/process/executable_lookup.hpp"
#include "tooling/process/process_runner.hpp"
#include "tooling/process/start_task.hpp"

namespace kinovane {

/// The path of a location of a call, absolute; `what` is what lies there. Throws FilmToolError (launchFailed)
/// for an empty location, which names nothing, and when the working directory cannot be read.
std::string locationArgument(std::string_view what, const std::filesystem::path& location);

/// Starts an operation on a thread of its own. `prepare` gives it, and takes down on this thread what depends
/// on the moment of the call, such as the working directory. A FilmToolError of `prepare` arrives through the
/// task as one of the operation does.
template <class Answer, class Prepare>
Task<Answer> startPrepared(Prepare prepare) {
    try {
        return startTask<Answer>(prepare());
    } catch (const FilmToolError&) {
        return startTask<Answer>(
            [error = std::current_exception()]() -> Answer { std::rethrow_exception(error); });
    }
}

/// Runs a program on a thread of its own; `finish` makes the answer of its result. `makeArguments` is called
/// on this thread, and may throw FilmToolError.
template <class Answer, class MakeArguments, class Finish>
Task<Answer> startProgram(const std::string& executable, MakeArguments makeArguments,
                          std::map<std::string, std::string> environment, Finish finish) {
    return startPrepared<Answer>([&] {
        return [lookup = ExecutableLookup(executable), arguments = makeArguments(),
                environment = std::move(environment), finish = std::move(finish)]() mutable {
            return finish(runSynchronously(lookup.find(), std::move(arguments), environment));
        };
    });
}

} // namespace kinovane
