// SPDX-License-Identifier: Apache-2.0

// races_writer TARGET ROUNDS VERSION…
// Writes these versions of a manifest by turns, so many times in all. Around each writing it says
// "b" and "e" on standard output, so that it is known whether it was killed in the middle.

#include <cstddef>
#include <cstdio>
#include <exception>
#include <string>
#include <string_view>
#include <vector>

#include <unistd.h>

#include "races/manifest_versions.hpp"

namespace {

void say(std::string_view text) {
    if (::write(STDOUT_FILENO, text.data(), text.size()) != static_cast<ssize_t>(text.size()))
        ::_exit(3);
}

} // namespace

int main(int count, char** arguments) {
    try {
        const std::vector<std::string> words(arguments + 1, arguments + count);
        const std::size_t rounds = std::stoul(words.at(1));
        std::vector<kinovane::VistrelHandoff> versions;
        versions.push_back(kinovane::test::manifestVersion(std::stoul(words.at(2))));
        for (std::size_t word = 3; word < words.size(); ++word)
            versions.push_back(kinovane::test::manifestVersion(std::stoul(words[word])));
        for (std::size_t round = 0; round < rounds; ++round) {
            say("b");
            kinovane::VistrelHandoffBuilder::write(versions.at(round % versions.size()), words[0]);
            say("e");
        }
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "races_writer: %s\n", error.what());
        return 1;
    }
}
