// SPDX-License-Identifier: Apache-2.0

// Several commands of the film tool, one after the other, as a coroutine on a main loop:
//   coroutines FILM RUN_JSON
// Approves the gate that the run waits for, continues the production, and shows the new status.
#include <coroutine>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>

#include <kinovane/tooling.hpp>
#include <kinovane/user_message.hpp>

#include "event_loop.hpp"

using namespace kinovane;

namespace {

/// The return type of a coroutine that starts at once and whose end is not awaited.
struct Detached {
    struct promise_type {
        Detached get_return_object() { return {}; }
        std::suspend_never initial_suspend() { return {}; }
        std::suspend_never final_suspend() noexcept { return {}; }
        void return_void() {}
        void unhandled_exception() { std::terminate(); }
    };
};

// `film` and `run` are copies, because the coroutine outlives the call.
Detached approveAndAdvance(FilmToolClient film, std::filesystem::path run, EventLoop& loop) {
    try {
        const FilmStatusResponse before = co_await film.status(run).on(loop.executor());
        std::cout << before.title << ": " << before.phase << '\n';
        if (before.nextGate) {
            co_await film.approve(run, *before.nextGate, "looks right", "director").on(loop.executor());
            std::cout << "approved " << *before.nextGate << '\n';
        }
        co_await film.advance(run).on(loop.executor());
        const FilmStatusResponse after = co_await film.status(run).on(loop.executor());
        std::cout << after.title << ": " << after.phase << ", " << after.proof.completedCount()
                  << " of 10 steps proven\n";
        loop.quit(EXIT_SUCCESS);
    } catch (const std::exception& error) {
        std::cerr << userMessage(error) << '\n';
        loop.quit(EXIT_FAILURE);
    }
}

} // namespace

int main(int count, char** arguments) {
    if (count != 3) {
        std::cerr << "usage: coroutines FILM RUN_JSON\n";
        return 2;
    }
    EventLoop loop;
    approveAndAdvance(FilmToolClient(arguments[1]), arguments[2], loop);
    return loop.run();
}
