// SPDX-License-Identifier: Apache-2.0

// Stops productions in each of the ways that an application has. The film tool should be busy for a while:
//   guide_stopping FILM RUN_JSON
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iostream>
#include <utility>

#include <kinovane/tooling.hpp>
#include <kinovane/user_message.hpp>

#include "../event_loop.hpp"

using namespace kinovane;

namespace {

//! [report]
void report(Task<ProcessResult> finished) {
    try {
        finished.get();
        std::cout << "The production has reached the next gate.\n";
    } catch (const RunStopped& stopped) {
        if (stopped.code() == std::errc::timed_out)
            std::cout << "The production took too long.\n";
        else
            std::cout << "The production was stopped. Offer to recover the film.\n";
    } catch (const std::exception& error) {
        std::cout << userMessage(error) << '\n';
    }
}
//! [report]

//! [window]
class Window {
  public:
    Window(FilmToolClient film, EventLoop& loop) : film_(std::move(film)), loop_(loop) {}

    void onContinue(const std::filesystem::path& run) {
        if (running_++ == 0)
            stop_ = StopSource(); // A source that was asked to stop stays so.
        RunOptions options;
        options.stop = stop_.token();
        film_.advance(run, {}, {}, {}, options).then(loop_.executor(), [this](Task<ProcessResult> finished) {
            report(std::move(finished)); // The program has ended: nothing of it is left.
            --running_;
            if (closing_ && running_ == 0)
                loop_.quit(EXIT_SUCCESS);
        });
    }

    void onStop() { stop_.requestStop(); } // Returns at once. The handler above runs later.

    void onClose() {
        closing_ = true;
        stop_.requestStop();
        if (running_ == 0)
            loop_.quit(EXIT_SUCCESS);
    }

  private:
    FilmToolClient film_;
    EventLoop& loop_;
    StopSource stop_;
    int running_ = 0;
    bool closing_ = false;
};
//! [window]

void stopWithoutLoop(const FilmToolClient& film, const std::filesystem::path& run) {
    //! [wait]
    StopSource stop;
    RunOptions options;
    options.stop = stop.token();
    Task<ProcessResult> production = film.advance(run, {}, {}, {}, options);
    // … later, when the application has to end at once:
    stop.requestStop();
    production.wait(); // Blocks until the program has ended, at the longest for the grace period.
    //! [wait]
    report(std::move(production));
}

void limitTheTime(const FilmToolClient& film, const std::filesystem::path& run) {
    //! [limit]
    RunOptions options;
    options.timeLimit = std::chrono::milliseconds(200);
    options.gracePeriod = std::chrono::seconds(2); // From SIGTERM to SIGKILL. 5 seconds by default.
    report(film.advance(run, {}, {}, {}, options));
    //! [limit]
}

} // namespace

int main(int count, char** arguments) {
    if (count != 3) {
        std::cerr << "usage: guide_stopping FILM RUN_JSON\n";
        return 2;
    }
    const FilmToolClient film(arguments[1]);
    const std::filesystem::path run = arguments[2];
    try {
        EventLoop loop;
        Window window(film, loop);
        loop.executor()([&] { window.onContinue(run); });
        loop.executor()([&] { window.onClose(); });
        const int status = loop.run();
        stopWithoutLoop(film, run);
        limitTheTime(film, run);
        return status;
    } catch (const std::exception& error) {
        std::cerr << userMessage(error) << '\n';
        return EXIT_FAILURE;
    }
}
