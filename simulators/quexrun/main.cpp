// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <array>
#include <exception>
#include <iostream>
#include <span>
#include <string_view>
#include <vector>

#include "misbehaviour.hpp"
#include "status_reply.hpp"

namespace quexrun {
namespace {

constexpr int failed = 1;
constexpr int misused = 2;

int run(std::span<const std::string_view> arguments) {
    static constexpr std::array<std::string_view, 3> accepted{"agent", "status", "--json"};
    if (!std::ranges::equal(arguments, accepted)) {
        std::cerr << "usage: quexrun agent status --json\n";
        return misused;
    }
    int status = 0;
    if (const auto misbehaviour = misbehave())
        status = *misbehaviour;
    else
        std::cout << statusReply();
    if (!std::cout.flush()) {
        std::cerr << "cannot write the status to standard output\n";
        return failed;
    }
    return status;
}

} // namespace
} // namespace quexrun

int main(int argumentCount, char** argumentValues) {
    try {
        const std::vector<std::string_view> all(argumentValues, argumentValues + argumentCount);
        return quexrun::run(std::span(all).subspan(all.empty() ? 0 : 1));
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return quexrun::failed;
    }
}
