// SPDX-License-Identifier: Apache-2.0

// The application exits while a worker thread builds a handoff.

#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <kinovane/tooling.hpp>

#include "support/sample_film.hpp"
#include "support/sanitizers.hpp"
#include "support/task_failure.hpp"

namespace kinovane::test {

namespace {

// A sanitized program takes many times as long to start.
constexpr int exits = underThreadSanitizer || memoryIsSanitized ? 50 : 500;

struct ExitRow {
    const char* sentence;
    const char* mode;
};

void PrintTo(const ExitRow& row, std::ostream* stream) { *stream << row.sentence; }

class ExitDuringABuild : public testing::TestWithParam<ExitRow> {};

TEST_P(ExitDuringABuild, EndsWithTheApplicationsStatus) {
    const FilmToolClient program(programPath("exiting_builder"));
    const std::string run = sampleFilm() / "run.json";
    std::minstd_rand random(20261121);
    // Longer than one build takes, so that the exit meets every part of it.
    std::uniform_int_distribution<int> microseconds(0, 8000);
    for (int exit = 0; exit < exits; ++exit) {
        const std::string moment = std::to_string(microseconds(random));
        SCOPED_TRACE("after " + moment + " microseconds");
        EXPECT_EQ(failureOf(program.run({run, moment, GetParam().mode})), "");
        if (HasFailure())
            return;
    }
}

INSTANTIATE_TEST_SUITE_P(, ExitDuringABuild,
                         testing::Values(ExitRow{"only this library uses libcrypto", "plain"},
                                         ExitRow{"the application uses libcrypto as well", "initialised"}),
                         [](const auto& row) { return std::string(row.param.mode); });

} // namespace

} // namespace kinovane::test
