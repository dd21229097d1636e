// SPDX-License-Identifier: Apache-2.0

// Continues a production on the main loop of GLib, and shows the output of the film tool as it arrives:
//   glib_main_loop FILM RUN_JSON
// SIGINT and SIGTERM, which stand for the user's wish to quit, end the production first and then the loop.
#include <csignal>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <string>
#include <string_view>

#include <glib-unix.h>

#include <kinovane/tooling.hpp>
#include <kinovane/user_message.hpp>

#include "glib_executor.hpp"

using namespace kinovane;

namespace {

/// Shows how the production ended. Returns the exit status.
int report(Task<ProcessResult> finished) {
    try {
        finished.get();
        std::cout << "The production has finished.\n";
        return EXIT_SUCCESS;
    } catch (const RunStopped&) {
        std::cout << "The production was stopped.\n";
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        std::cerr << userMessage(error) << '\n';
        return EXIT_FAILURE;
    }
}

/// Requests the stop. The loop keeps running until the production has ended.
gboolean onSignal(gpointer stop) {
    static_cast<StopSource*>(stop)->requestStop();
    return G_SOURCE_CONTINUE;
}

} // namespace

int main(int count, char** arguments) {
    if (count != 3) {
        std::cerr << "usage: glib_main_loop FILM RUN_JSON\n";
        return 2;
    }
    GMainLoop* const loop = g_main_loop_new(nullptr, 0);
    int status = EXIT_FAILURE;
    const GLibExecutor glib;
    StopSource stop;

    RunOptions options;
    options.stop = stop.token();
    // Called on the operation's thread, so the chunk is copied and shown by the loop.
    options.onOutput = [post = glib.executor()](OutputStream, std::string_view chunk) {
        post([text = std::string(chunk)] { std::cout << text << std::flush; });
    };

    g_unix_signal_add(SIGINT, onSignal, &stop);
    g_unix_signal_add(SIGTERM, onSignal, &stop);

    const FilmToolClient film(arguments[1]);
    film.advance(arguments[2], {}, {}, {}, options).then(glib.executor(), [&](Task<ProcessResult> finished) {
        status = report(std::move(finished));
        g_main_loop_quit(loop);
    });
    g_main_loop_run(loop);
    g_main_loop_unref(loop);
    return status;
}
