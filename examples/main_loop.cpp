// SPDX-License-Identifier: Apache-2.0

// Asks the film tool for the status of a run without blocking the main loop:
//   main_loop FILM RUN_JSON
#include <cstdlib>
#include <iostream>

#include <kinovane/tooling.hpp>
#include <kinovane/user_message.hpp>

#include "event_loop.hpp"

using namespace kinovane;

int main(int count, char** arguments) {
    if (count != 3) {
        std::cerr << "usage: main_loop FILM RUN_JSON\n";
        return 2;
    }
    EventLoop loop;
    const FilmToolClient film(arguments[1]);

    // Returns at once. The handler runs later, on this thread, called by the loop.
    film.status(arguments[2]).then(loop.executor(), [&loop](Task<FilmStatusResponse> finished) {
        try {
            const FilmStatusResponse status = finished.get(); // Does not block: the operation is done.
            std::cout << status.title << ": " << status.phase << ", " << status.proof.completedCount()
                      << " of 10 steps proven\n";
            loop.quit(EXIT_SUCCESS);
        } catch (const std::exception& error) {
            std::cerr << userMessage(error) << '\n';
            loop.quit(EXIT_FAILURE);
        }
    });
    std::cout << "Asking the film tool …\n";
    return loop.run();
}
