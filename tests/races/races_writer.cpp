// SPDX-License-Identifier: Apache-2.0

// races_writer TARGET ROUNDS VERSION…
// Writes these versions of a manifest in turn, ROUNDS times in all. Prints "b" before and "e" after each
// write, so that the parent can tell whether it was killed during one.

#include <cstddef>
#include <cstdio>
#include <exception>
#include <string>
#include <string_view>
#include <vector>

#include <unistd.h>

#include "races/manifest_versions.hpp"

namespace {

void print(std::string_view text) {
    if (::write(STDOUT_FILENO, text.data(), text.size()) != static_cast<ssize_t>(text.size()))
        ::_exit(3);
}

} // namespace

int main(int count, char** arguments) {
    try {
        const std::vector<std::string> values(arguments + 1, arguments + count);
        const std::size_t rounds = std::stoul(values.at(1));
        std::vector<kinovane::VistrelHandoff> versions;
        versions.push_back(kinovane::test::manifestVersion(std::stoul(values.at(2))));
        for (std::size_t index = 3; index < values.size(); ++index)
            versions.push_back(kinovane::test::manifestVersion(std::stoul(values[index])));
        for (std::size_t round = 0; round < rounds; ++round) {
            print("b");
            kinovane::VistrelHandoffBuilder::write(versions.at(round % versions.size()), values[0]);
            print("e");
        }
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "races_writer: %s\n", error.what());
        return 1;
    }
}
