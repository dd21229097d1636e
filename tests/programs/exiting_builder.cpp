// SPDX-License-Identifier: Apache-2.0

// Exits while a worker thread builds a handoff: exiting_builder RUN_JSON MICROSECONDS plain|initialised
//   initialised  this program itself uses libcrypto before the library does, so that libcrypto's exit handler
//                is registered first. When that runs before the library's first digest, the build fails.

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>

#include <openssl/crypto.h>
#include <openssl/evp.h>

#include <kinovane/handoff.hpp>

// The process ends in the middle of an allocation of another thread, which is no leak.
extern "C" const char* __asan_default_options(); // NOLINT(bugprone-reserved-identifier): the sanitizer's name
extern "C" const char* __asan_default_options() { return "detect_leaks=0"; }

using namespace std::string_view_literals;

int main(int count, char** arguments) {
    if (count != 4)
        return 2;
    const bool initialised = arguments[3] == "initialised"sv;
    if (initialised) {
        OPENSSL_init_crypto(OPENSSL_INIT_LOAD_CONFIG, nullptr);
        EVP_MD_free(EVP_MD_fetch(nullptr, "SHA2-256", nullptr));
    }
    // Never destroyed, because the worker thread uses it until the process ends.
    const auto& film = *new kinovane::FilmWorkspaceSnapshot(kinovane::FilmProjectLoader::load(arguments[1]));
    static std::atomic<bool> building = false;
    std::thread([&film, initialised] {
        for (;;) {
            building = true;
            building.notify_all();
            kinovane::HandoffBuildOptions options;
            options.workers = 2;
            try {
                static_cast<void>(kinovane::VistrelHandoffBuilder::build(film, "film", "now", options));
            } catch (const std::runtime_error& error) {
                if (!initialised ||
                    error.what() != "libcrypto cannot be used any more, because the process is exiting"sv)
                    throw;
                return;
            }
        }
    }).detach();
    building.wait(false);
    // The delay is the parameter of the test: the process exits at a different step of the build each time.
    std::this_thread::sleep_for(std::chrono::microseconds(std::stol(arguments[2])));
    return EXIT_SUCCESS; // Runs the exit handlers and destroys static objects.
}
