// SPDX-License-Identifier: Apache-2.0

// Continues a production on the main loop of Boost.Asio, and shows the output of the film tool as it arrives:
//   asio_main_loop FILM RUN_JSON
// SIGINT and SIGTERM, which stand for the user's wish to quit, end the production first and then the loop.
#include <csignal>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <string>
#include <string_view>

#include <boost/asio/io_context.hpp>
#include <boost/asio/signal_set.hpp>

#include <kinovane/tooling.hpp>
#include <kinovane/user_message.hpp>

#include "asio_executor.hpp"

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

} // namespace

int main(int count, char** arguments) {
    if (count != 3) {
        std::cerr << "usage: asio_main_loop FILM RUN_JSON\n";
        return 2;
    }
    boost::asio::io_context loop;
    const AsioExecutor asio(loop);
    StopSource stop;
    int status = EXIT_FAILURE;

    RunOptions options;
    options.stop = stop.token();
    // Called on the operation's thread, so the chunk is copied and shown by the loop.
    options.onOutput = [post = asio.executor()](OutputStream, std::string_view chunk) {
        post([text = std::string(chunk)] { std::cout << text << std::flush; });
    };

    boost::asio::signal_set signals(loop, SIGINT, SIGTERM);
    signals.async_wait([&stop](const boost::system::error_code& error, int /*signal*/) {
        if (!error)
            stop.requestStop(); // The loop keeps running until the production has ended.
    });

    const FilmToolClient film(arguments[1]);
    film.advance(arguments[2], {}, {}, {}, options).then(asio.executor(), [&](Task<ProcessResult> finished) {
        status = report(std::move(finished));
        loop.stop();
    });
    loop.run();
    return status;
}
