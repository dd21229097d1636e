// SPDX-License-Identifier: Apache-2.0

#include "misbehaviour.hpp"

#include <cstdlib>
#include <iostream>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "common/program.hpp"
#include "common/refusal.hpp"
#include "sample_reply.hpp"

namespace simulator::film {
namespace {

constexpr int failed = 4;

int print(const std::string& text) {
    std::cout << text << '\n';
    return 0;
}

int complain(const std::string& text, int status) {
    std::cerr << text << '\n';
    return status;
}

/// Waits until another process opens the pipe for writing. So a test decides, without a clock, when this
/// program continues.
std::optional<int> waitForRelease() {
    const char* name = std::getenv("FILM_RELEASE");
    struct stat status{};
    if (name == nullptr || ::stat(name, &status) != 0 || !S_ISFIFO(status.st_mode))
        return complain("FILM_RELEASE does not name a pipe to wait for", misused);
    const int descriptor = ::open(name, O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        refuseForSystem("open", name, lastSystemError());
    ::close(descriptor);
    return std::nullopt;
}

} // namespace

std::vector<Misbehaviour> misbehaviours(const Command& command, bool& cutOff) {
    return {
        {"not-json", [&] { return print("The command \"" + command.word + "\" has been carried out."); }},
        {"missing-key", [&] { return print(json::serialize(replyWithoutKey(command.word))); }},
        {"wrong-type", [&] { return print(json::serialize(replyOfWrongType(command.word))); }},
        {"noise",
         [&] { return print("[info] opening the film\n" + json::serialize(sampleReply(command.word))); }},
        {"exit-4", [] { return failed; }},
        {"complain",
         [] { return complain("The projector has lost a reel. Try again after the intermission.", failed); }},
        {"slow", waitForRelease},
        {"killed", []() -> int { dieByKill(); }},
        {"cut-off",
         [&]() -> std::optional<int> {
             if (command.word != "run")
                 return complain("FILM_MISBEHAVE: only \"run\" can be cut off", misused);
             cutOff = true;
             return std::nullopt;
         }},
    };
}

} // namespace simulator::film
