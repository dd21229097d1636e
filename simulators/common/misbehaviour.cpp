// SPDX-License-Identifier: Apache-2.0

#include "common/misbehaviour.hpp"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <iostream>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "common/json_text.hpp"
#include "common/program.hpp"
#include "common/refusal.hpp"

namespace simulator {

std::optional<int> misbehave(const char* variable, std::span<const Misbehaviour> known) {
    const char* name = std::getenv(variable);
    if (name == nullptr || *name == '\0')
        return std::nullopt;
    const auto chosen = std::ranges::find(known, std::string_view(name), &Misbehaviour::name);
    if (chosen != known.end())
        return chosen->perform();
    std::cerr << variable << ": " << jsonQuoted(name) << " is unknown; known are";
    for (const Misbehaviour& misbehaviour : known)
        std::cerr << ' ' << misbehaviour.name;
    std::cerr << '\n';
    return misused;
}

int print(const std::string& text) {
    std::cout << text << '\n';
    return 0;
}

int complain(const std::string& text, int status) {
    std::cerr << text << '\n';
    return status;
}

int flood(const std::string& reply) {
    constexpr std::size_t chunkSize = std::size_t{64} << 10U; // As much as a pipe holds.
    constexpr std::size_t chunks = 128;
    const std::string padding(chunkSize, ' ');
    std::string log;
    while (log.size() < chunkSize)
        log += "[debug] examining the film again\n";
    log.resize(chunkSize - 1);
    log += '\n';
    std::cout << reply;
    for (std::size_t chunk = 0; chunk < chunks; ++chunk) {
        std::cout << padding << std::flush;
        std::cerr << log << std::flush;
    }
    return print("");
}

std::optional<int> waitForRelease(const char* variable) {
    const char* name = std::getenv(variable);
    struct stat status{};
    if (name == nullptr || ::stat(name, &status) != 0 || !S_ISFIFO(status.st_mode))
        return complain(std::string(variable) + " does not name a pipe to wait for", misused);
    const int descriptor = ::open(name, O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        refuseForSystem("open", name, lastSystemError());
    char ignored = 0;
    while (::read(descriptor, &ignored, 1) > 0)
        continue;
    ::close(descriptor);
    return std::nullopt;
}

std::optional<int> waitStubbornly(const char* variable) {
    std::signal(SIGTERM, SIG_IGN);
    return waitForRelease(variable);
}

void dieByKill() {
    std::raise(SIGKILL);
    std::abort();
}

} // namespace simulator
