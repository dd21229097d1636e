// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <utility>
#include <vector>

#include <kinovane/run_options.hpp>
#include <kinovane/tooling.hpp>

#include "tooling/process/test_program.hpp"

namespace kinovane::test {

/// Runs the test program and returns its standard output; for a run that was stopped "canceled" or "timed
/// out", its exit code and the output until then; for another failure its message.
inline std::string outcomeWith(std::vector<std::string> arguments, RunOptions options) {
    try {
        return FilmToolClient(testProgramPath())
            .run(std::move(arguments), {}, std::move(options))
            .get()
            .stdout;
    } catch (const RunStopped& error) {
        return std::string(error.code() == std::errc::timed_out ? "timed out" : "canceled") + ", " +
               std::to_string(error.result().exitCode) + ": " + error.result().stdout;
    } catch (const std::exception& error) {
        return error.what();
    }
}

} // namespace kinovane::test
