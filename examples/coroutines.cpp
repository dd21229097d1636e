// SPDX-License-Identifier: Apache-2.0

// The same as main_loop.cpp, and then some, as a coroutine: one step after the other, and never a thread that
// waits.
//   coroutines FILM RUN_JSON     approves the gate that a run waits for, goes on, and shows how it stands
#include <coroutine>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>

#include <kinovane/tooling.hpp>

#include "event_loop.hpp"

namespace {

/// A coroutine that nobody waits for. It keeps itself alive until its end.
struct Detached {
    struct promise_type {
        Detached get_return_object() { return {}; }
        std::suspend_never initial_suspend() { return {}; }
        std::suspend_never final_suspend() noexcept { return {}; }
        void return_void() {}
        void unhandled_exception() { std::terminate(); }
    };
};

// The parameters are copies: the coroutine outlives the call.
Detached goOn(kinovane::FilmToolClient film, std::filesystem::path run, EventLoop& loop) {
    try {
        const auto before = co_await film.status(run).on(loop.executor());
        std::cout << before.title << ": " << before.phase << '\n';
        if (before.nextGate) {
            co_await film.approve(run, *before.nextGate, "looks right", "director").on(loop.executor());
            std::cout << "approved " << *before.nextGate << '\n';
        }
        // The same as film.advance(run). g++ 12 does not compile a braced list inside a co_await expression,
        // so the task is made in a statement before it.
        auto advancing = film.run({"run", run.string()});
        co_await advancing.on(loop.executor());
        const auto after = co_await film.status(run).on(loop.executor());
        std::cout << after.title << ": " << after.phase << ", " << after.proof.completedCount()
                  << " of 10 steps proven\n";
        loop.quit(EXIT_SUCCESS);
    } catch (const kinovane::FilmToolError& error) {
        std::cerr << error.errorDescription() << '\n';
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
    goOn(kinovane::FilmToolClient(arguments[1]), arguments[2], loop);
    return loop.run();
}
