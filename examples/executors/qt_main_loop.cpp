// SPDX-License-Identifier: Apache-2.0

// Continues a production on the main loop of Qt, and shows the output of the film tool as it arrives:
//   qt_main_loop FILM RUN_JSON
// SIGINT and SIGTERM, which stand for the user's wish to quit, end the production first and then the loop.
#include <QCoreApplication>
#include <QSocketNotifier>
#include <array>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <string>
#include <string_view>

#include <unistd.h>

#include <kinovane/tooling.hpp>
#include <kinovane/user_message.hpp>

#include "qt_executor.hpp"

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

/// A signal handler may call few functions. It writes to this pipe, and the event loop reads from it.
std::array<int, 2> signalPipe;

void onSignal(int /*signal*/) { [[maybe_unused]] const auto written = ::write(signalPipe[1], "!", 1); }

} // namespace

int main(int count, char** arguments) {
    if (count != 3) {
        std::cerr << "usage: qt_main_loop FILM RUN_JSON\n";
        return 2;
    }
    const QCoreApplication application(count, arguments);
    const QtExecutor qt;
    StopSource stop;

    RunOptions options;
    options.stop = stop.token();
    // Called on the operation's thread, so the chunk is copied and shown by the loop.
    options.onOutput = [post = qt.executor()](OutputStream, std::string_view chunk) {
        post([text = std::string(chunk)] { std::cout << text << std::flush; });
    };

    if (::pipe(signalPipe.data()) != 0)
        return EXIT_FAILURE;
    std::signal(SIGINT, onSignal);
    std::signal(SIGTERM, onSignal);
    QSocketNotifier notifier(signalPipe[0], QSocketNotifier::Read);
    QObject::connect(&notifier, &QSocketNotifier::activated, [&] {
        notifier.setEnabled(false);
        stop.requestStop(); // The loop keeps running until the production has ended.
    });

    const FilmToolClient film(arguments[1]);
    film.advance(arguments[2], {}, {}, {}, options).then(qt.executor(), [](Task<ProcessResult> finished) {
        QCoreApplication::exit(report(std::move(finished)));
    });
    return QCoreApplication::exec();
}
