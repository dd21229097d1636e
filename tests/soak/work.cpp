// SPDX-License-Identifier: Apache-2.0

#include "soak/work.hpp"

#include <algorithm>
#include <stdexcept>
#include <string>

#include "support/sample_film.hpp"

namespace kinovane::test {

namespace {

constexpr const char* time = "2026-03-01T14:05:09Z";

void require(bool right, const char* what) {
    if (!right)
        throw std::runtime_error(what);
}

/// Whether one of `count` evenly spread items falls on this one of `total` steps.
bool isDue(std::size_t step, std::size_t total, std::size_t count) {
    return (step + 1) * count / total > step * count / total;
}

} // namespace

Work::Work()
    : client_(programPath("test_program")), snapshot_(FilmProjectLoader::load(sampleFilm() / "run.json")),
      handoff_(VistrelHandoffBuilder::build(snapshot_, "/film", time)) {}

void Work::perform(const Rounds& rounds) {
    const std::size_t steps = std::max({rounds.runs, rounds.loads, rounds.builds});
    for (std::size_t step = 0; step < steps; ++step) {
        if (isDue(step, steps, rounds.runs))
            run();
        if (isDue(step, steps, rounds.loads))
            load();
        if (isDue(step, steps, rounds.builds))
            build();
    }
}

// Every tenth program fails, and every tenth is missing, because these return on different paths.
void Work::run() {
    const std::string text = std::to_string(++turn_);
    if (turn_ % 10 == 0) {
        try {
            (void)client_.run({"err", text, "exit", "3"}).get();
            require(false, "a failed program was not noticed");
        } catch (const FilmToolError& error) {
            require(error.errorDescription() == text, "a failed program's message was not its own");
        }
    } else if (turn_ % 10 == 5) {
        try {
            (void)FilmToolClient("kinovane-no-such-tool").run({}).get();
            require(false, "a missing program was run");
        } catch (const FilmToolError&) {
            return;
        }
    } else {
        const ProcessResult result = client_.run({"out", text, "err", text}, {{"KEY", text}}).get();
        require(result.stdout == text && result.stderr == text, "a program's output was not its own");
    }
}

void Work::load() const {
    require(FilmProjectLoader::load(sampleFilm() / "run.json") == snapshot_,
            "the film was loaded as another");
}

void Work::build() {
    const auto workers = static_cast<unsigned>(++turn_ % 3 + 1);
    const HandoffBuildOptions options{workers, [](const VerificationProgress& /*progress*/) {}, {}};
    require(VistrelHandoffBuilder::build(snapshot_, "/film", time, options) == handoff_,
            "another handoff was built");
    VistrelHandoffBuilder::write(handoff_, directory_ / "manifest.json");
}

} // namespace kinovane::test
