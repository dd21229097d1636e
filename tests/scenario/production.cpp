// SPDX-License-Identifier: Apache-2.0

#include "scenario/production.hpp"

#include <gtest/gtest.h>

#include "support/sample_film.hpp"
#include "support/task_failure.hpp"

namespace kinovane::test {

const std::vector<std::string>& gates() {
    static const std::vector<std::string> all{"plan", "frames", "rough-cut", "delivery"};
    return all;
}

Production::Production() : film(programPath("film")), run(film.plan(idea, title, 10, folder).get()) {}

FilmWorkspaceSnapshot Production::checked() const {
    FilmWorkspaceSnapshot snapshot = FilmProjectLoader::load(run);
    expectSame(film.status(run).get(), snapshot);
    expectFilesAsRecorded(snapshot);
    return snapshot;
}

void Production::approve(const std::string& gate) const {
    film.approve(run, gate, "fine, “go”", "Irène").get();
}

std::string Production::pass(const std::string& gate) const {
    approve(gate);
    const ProcessResult result = film.advance(run).get();
    EXPECT_EQ(result, (ProcessResult{film.executable(), {"run", run.string()}, 0, result.stdout, ""}));
    return result.stdout;
}

void Production::passUpTo(const std::string& gate) const {
    for (const std::string& each : gates()) {
        pass(each);
        if (each == gate)
            return;
    }
    FAIL() << "there is no gate " << gate;
}

void Production::cutOff() const {
    EXPECT_EQ(errorOf(film.run({"run", run.string()}, {{"FILM_MISBEHAVE", "cut-off"}})),
              refusal({"run", run.string()}, "", 9));
}

FilmToolError Production::refusal(std::vector<std::string> arguments, const std::string& message,
                                  std::int32_t exitCode) const {
    return FilmToolError::commandFailed{{film.executable(), std::move(arguments), exitCode, "", message}};
}

} // namespace kinovane::test
