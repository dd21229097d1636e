// SPDX-License-Identifier: Apache-2.0

// Plans a film, approves each gate, and continues the production until it is done:
//   guide_production FILM DIRECTORY
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>
#include <string_view>
#include <utility>

#include <kinovane/tooling.hpp>
#include <kinovane/user_message.hpp>

#include "../event_loop.hpp"

using namespace kinovane;

namespace {

void showProgram(const std::string& name) {
    //! [lookup]
    const std::filesystem::path found = FilmToolClient::resolveExecutable(name);
    std::cout << "film tool: " << found.filename().string() << '\n';
    //! [lookup]
}

class Production {
  public:
    Production(FilmToolClient film, EventLoop& loop) : film_(std::move(film)), loop_(loop) {}

    //! [plan]
    void plan(const std::filesystem::path& directory) {
        auto planned = film_.plan("A lamp is borrowed", "Lamp", 6, directory);
        planned.then(loop_.executor(), [this](Task<std::filesystem::path> finished) {
            try {
                run_ = finished.get(); // The location of the new run.json.
                askForStatus();
            } catch (const std::exception& error) {
                fail(error);
            }
        });
    }
    //! [plan]

  private:
    //! [status]
    void askForStatus() {
        film_.status(run_).then(loop_.executor(), [this](Task<FilmStatusResponse> finished) {
            try {
                const FilmStatusResponse status = finished.get();
                std::cout << status.title << ": " << status.phase << '\n';
                if (status.nextGate)
                    approve(*status.nextGate); // An application asks its user first.
                else
                    loop_.quit(EXIT_SUCCESS);
            } catch (const std::exception& error) {
                fail(error);
            }
        });
    }
    //! [status]

    //! [approve]
    void approve(const std::string& gate) {
        auto approved = film_.approve(run_, gate, "looks right", "director");
        approved.then(loop_.executor(), [this, gate](Task<void> finished) {
            try {
                finished.get();
                std::cout << "approved " << gate << '\n';
                advance();
            } catch (const std::exception& error) {
                fail(error);
            }
        });
    }
    //! [approve]

    //! [output]
    void advance() {
        RunOptions options;
        options.standardInput = StandardInput::empty; // The tool must not read the application's terminal.
        // Called on the thread of the operation, so the chunk is copied and shown by the loop.
        options.onOutput = [post = loop_.executor()](OutputStream stream, std::string_view chunk) {
            post([stream, text = std::string(chunk)] {
                std::cout << (stream == OutputStream::standardError ? "! " : "> ") << text;
            });
        };
        auto advanced = film_.advance(run_, {}, {}, {}, options);
        advanced.then(loop_.executor(), [this](Task<ProcessResult> finished) {
            try {
                finished.get();
                askForStatus();
            } catch (const std::exception& error) {
                fail(error);
            }
        });
    }
    //! [output]

    void fail(const std::exception& error) {
        std::cerr << userMessage(error) << '\n';
        loop_.quit(EXIT_FAILURE);
    }

    FilmToolClient film_;
    EventLoop& loop_;
    std::filesystem::path run_;
};

} // namespace

int main(int count, char** arguments) {
    if (count != 3) {
        std::cerr << "usage: guide_production FILM DIRECTORY\n";
        return 2;
    }
    EventLoop loop;
    try {
        showProgram(arguments[1]);
    } catch (const std::exception& error) {
        std::cerr << userMessage(error) << '\n';
        return EXIT_FAILURE;
    }
    Production production(FilmToolClient(arguments[1]), loop);
    production.plan(arguments[2]);
    return loop.run();
}
