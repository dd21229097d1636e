// SPDX-License-Identifier: Apache-2.0

// A plain main loop that receives the results of outside programs without ever waiting for one:
//   main_loop FILM RUN_JSON     asks the film tool how a run stands
#include <cstdlib>
#include <iostream>

#include <kinovane/tooling.hpp>

#include "event_loop.hpp"

int main(int count, char** arguments) {
    if (count != 3) {
        std::cerr << "usage: main_loop FILM RUN_JSON\n";
        return 2;
    }
    EventLoop loop;
    const kinovane::FilmToolClient film(arguments[1]);

    // Returns at once; the handler runs on this thread, from the loop.
    film.status(arguments[2])
        .then(loop.executor(), [&loop](kinovane::Task<kinovane::FilmStatusResponse> answered) {
            try {
                const kinovane::FilmStatusResponse status = answered.get();
                std::cout << status.title << ": " << status.phase << ", " << status.proof.completedCount()
                          << " of 10 steps proven\n";
                loop.quit(EXIT_SUCCESS);
            } catch (const kinovane::FilmToolError& error) {
                std::cerr << error.errorDescription() << '\n';
                loop.quit(EXIT_FAILURE);
            }
        });
    std::cout << "Asking the film tool …\n";
    return loop.run();
}
