// SPDX-License-Identifier: Apache-2.0

#include "common/misbehaviour.hpp"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <iostream>

#include "common/json_text.hpp"
#include "common/program.hpp"

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

void dieByKill() {
    std::raise(SIGKILL);
    std::abort();
}

} // namespace simulator
