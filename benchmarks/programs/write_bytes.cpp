// SPDX-License-Identifier: Apache-2.0

#include <algorithm>
#include <cstdlib>
#include <string>

#include <unistd.h>

/// Writes this many bytes of text to standard output: write_bytes COUNT
int main(int count, char** arguments) {
    if (count != 2)
        return 2;
    const std::string line = "frame 000217 of shot-17: rendered in 41 ms, denoised, written to the reel\n";
    std::string block;
    while (block.size() < std::size_t{64} << 10U)
        block += line;
    for (auto left = std::strtoull(arguments[1], nullptr, 10); left > 0;) {
        const ssize_t written = ::write(1, block.data(), std::min<std::size_t>(left, block.size()));
        if (written < 0)
            return 1;
        left -= static_cast<unsigned long long>(written);
    }
    return 0;
}
