// SPDX-License-Identifier: Apache-2.0

// The application exits while a worker thread builds a handoff.

#include <random>
#include <string>

#include <gtest/gtest.h>

#include <kinovane/tooling.hpp>

#include "support/sample_film.hpp"
#include "support/sanitizers.hpp"
#include "support/task_failure.hpp"

namespace kinovane::test {

namespace {

// A program built with a sanitizer takes much longer to start.
constexpr int exits = underThreadSanitizer || memoryIsSanitized ? 50 : 500;

/// Exits the application at random moments of a build; it has to exit with status 0. `mode` is an argument of
/// exiting_builder.
void expectExits(const char* mode) {
    const FilmToolClient program(programPath("exiting_builder"));
    const std::string run = sampleFilm() / "run.json";
    std::minstd_rand random(20261121);
    // Longer than a build takes, so that the exit meets every part of it.
    std::uniform_int_distribution<int> microseconds(0, 8000);
    for (int exit = 0; exit < exits && !testing::Test::HasFailure(); ++exit) {
        const std::string delay = std::to_string(microseconds(random));
        SCOPED_TRACE("after " + delay + " microseconds");
        EXPECT_EQ(failureOf(program.run({run, delay, mode})), "");
    }
}

TEST(ExitDuringBuild, HasTheApplicationsStatusWhenOnlyTheLibraryUsesLibcrypto) { expectExits("plain"); }

TEST(ExitDuringBuild, HasTheApplicationsStatusWhenTheApplicationUsesLibcryptoAsWell) {
    expectExits("initialised");
}

} // namespace

} // namespace kinovane::test
