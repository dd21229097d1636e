// SPDX-License-Identifier: Apache-2.0

#include "misbehaviour.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <string_view>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "common/json_text.hpp"
#include "common/refusal.hpp"
#include "sample_reply.hpp"

namespace film {
namespace {

constexpr int misused = 2;
constexpr int failed = 4;

Misbehaviour printNoJson(const Command& command) {
    std::cout << "The command \"" << command.word << "\" has been carried out.\n";
    return {0, false};
}

Misbehaviour printWithoutKey(const Command& command) {
    std::cout << simulator::compact(replyWithoutKey(command)) << '\n';
    return {0, false};
}

Misbehaviour printWrongType(const Command& command) {
    std::cout << simulator::compact(replyOfWrongType(command)) << '\n';
    return {0, false};
}

Misbehaviour printNoise(const Command& command) {
    std::cout << "[info] opening the film\n" << simulator::compact(sampleReply(command)) << '\n';
    return {0, false};
}

Misbehaviour exitWithFour(const Command&) { return {failed, false}; }

Misbehaviour complain(const Command&) {
    std::cerr << "The projector has lost a reel. Try again after the intermission.\n";
    return {failed, false};
}

/// Waits until somebody opens the pipe for writing, then carries the command out. Whoever waits for this
/// program so decides when it goes on, without a clock.
Misbehaviour waitForRelease(const Command&) {
    const char* name = std::getenv("FILM_RELEASE");
    struct stat status{};
    if (name == nullptr || ::stat(name, &status) != 0 || !S_ISFIFO(status.st_mode)) {
        std::cerr << "FILM_RELEASE does not name a pipe to wait for\n";
        return {misused, false};
    }
    int descriptor = ::open(name, O_RDONLY | O_CLOEXEC);
    while (descriptor < 0 && errno == EINTR)
        descriptor = ::open(name, O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        simulator::refuseForSystem("open", name, simulator::lastSystemError());
    ::close(descriptor);
    return {};
}

Misbehaviour dieByKill(const Command&) {
    std::raise(SIGKILL);
    return {failed, false};
}

Misbehaviour cutOff(const Command& command) {
    if (command.word != "run") {
        std::cerr << "FILM_MISBEHAVE: only \"run\" can be cut off\n";
        return {misused, false};
    }
    return {std::nullopt, true};
}

struct Named {
    std::string_view name;
    Misbehaviour (*perform)(const Command&);
};

constexpr std::array<Named, 9> misbehaviours{{{"not-json", printNoJson},
                                              {"missing-key", printWithoutKey},
                                              {"wrong-type", printWrongType},
                                              {"noise", printNoise},
                                              {"exit-4", exitWithFour},
                                              {"complain", complain},
                                              {"slow", waitForRelease},
                                              {"killed", dieByKill},
                                              {"cut-off", cutOff}}};

} // namespace

Misbehaviour misbehave(const Command& command) {
    const char* value = std::getenv("FILM_MISBEHAVE");
    if (value == nullptr || *value == '\0')
        return {};
    const auto chosen = std::ranges::find(misbehaviours, std::string_view(value), &Named::name);
    if (chosen != misbehaviours.end())
        return chosen->perform(command);
    std::cerr << "FILM_MISBEHAVE: " << simulator::jsonQuoted(value) << " is unknown; known are";
    for (const Named& known : misbehaviours)
        std::cerr << ' ' << known.name;
    std::cerr << '\n';
    return {misused, false};
}

} // namespace film
