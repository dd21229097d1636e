// SPDX-License-Identifier: Apache-2.0

#include "misbehaviour.hpp"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <string_view>

#include "common/json_text.hpp"
#include "status_reply.hpp"

namespace quexrun {
namespace {

int printNoJson() {
    std::cout << "Four models are known.\n";
    return 0;
}

int printWithoutKey() {
    boost::json::object status = builtInStatus();
    status["models"].as_array().front().as_object().erase("servingEngine");
    std::cout << simulator::compact(status) << '\n';
    return 0;
}

int printWrongType() {
    boost::json::object status = builtInStatus();
    status["models"].as_array().front().as_object()["installed"] = "yes";
    std::cout << simulator::compact(status) << '\n';
    return 0;
}

int printNoise() {
    std::cout << "[info] looking for models\n" << simulator::compact(builtInStatus()) << '\n';
    return 0;
}

int exitWithFive() { return 5; }

int complain() {
    std::cerr << "The agent runtime is being updated. Try again in a moment.\n";
    return 5;
}

int dieByKill() {
    std::raise(SIGKILL);
    return 1;
}

struct Misbehaviour {
    std::string_view name;
    int (*perform)();
};

constexpr std::array<Misbehaviour, 7> misbehaviours{{{"not-json", printNoJson},
                                                     {"missing-key", printWithoutKey},
                                                     {"wrong-type", printWrongType},
                                                     {"noise", printNoise},
                                                     {"exit-5", exitWithFive},
                                                     {"complain", complain},
                                                     {"killed", dieByKill}}};

} // namespace

std::optional<int> misbehave() {
    const char* value = std::getenv("QUEXRUN_MISBEHAVE");
    if (value == nullptr || *value == '\0')
        return std::nullopt;
    const auto chosen = std::ranges::find(misbehaviours, std::string_view(value), &Misbehaviour::name);
    if (chosen != misbehaviours.end())
        return chosen->perform();
    std::cerr << "QUEXRUN_MISBEHAVE: " << simulator::jsonQuoted(value) << " is unknown; known are";
    for (const Misbehaviour& known : misbehaviours)
        std::cerr << ' ' << known.name;
    std::cerr << '\n';
    return 2;
}

} // namespace quexrun
