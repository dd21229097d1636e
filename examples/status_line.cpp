// SPDX-License-Identifier: Apache-2.0

// A function of an application, and its test, which needs neither the film tool nor a film:
//   status_line FILM_SIMULATOR DIRECTORY
// The second half of the test runs the simulator of the film tool, which plans a film below DIRECTORY.
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <string>

#include <kinovane/tooling.hpp>
#include <kinovane/user_message.hpp>

using namespace kinovane;

namespace {

/// The text of the application's status line, made from a task that is done.
std::string statusLine(Task<FilmStatusResponse> finished) {
    try {
        const FilmStatusResponse status = finished.get();
        return status.title + ": " + status.phase;
    } catch (const std::exception& error) {
        return userMessage(error);
    }
}

bool passed = true;

void expect(const std::string& actual, const std::string& expected) {
    std::cout << actual << '\n';
    passed = passed && actual == expected;
}

void testWithoutPrograms() {
    FilmStatusResponse status;
    status.title = "Lamp";
    status.phase = "frames";
    expect(statusLine(Task<FilmStatusResponse>::ready(status)), "Lamp: frames");

    const FilmToolError missing = FilmToolError::executableNotFound{"film"};
    expect(statusLine(Task<FilmStatusResponse>::failed(std::make_exception_ptr(missing))),
           "Required executable not found: film");
}

void testWithSimulator(const FilmToolClient& simulator, const std::filesystem::path& directory) {
    const std::filesystem::path run = simulator.plan("A lamp is borrowed", "Lamp", 6, directory).get();
    expect(statusLine(simulator.status(run)), "Lamp: plan");

    RunOptions failing;
    failing.environment["FILM_MISBEHAVE"] = "exit-4"; // docs/guide/testing.md lists the values.
    expect(statusLine(simulator.status(run, failing)), "Film command exited 4.");
}

} // namespace

int main(int count, char** arguments) {
    if (count != 3) {
        std::cerr << "usage: status_line FILM_SIMULATOR DIRECTORY\n";
        return 2;
    }
    try {
        testWithoutPrograms();
        testWithSimulator(FilmToolClient(arguments[1]), arguments[2]);
        return passed ? EXIT_SUCCESS : EXIT_FAILURE;
    } catch (const std::exception& error) {
        std::cerr << userMessage(error) << '\n';
        return EXIT_FAILURE;
    }
}
