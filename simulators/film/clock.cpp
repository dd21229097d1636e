// SPDX-License-Identifier: Apache-2.0

#include "clock.hpp"

#include <array>
#include <cstdlib>
#include <ctime>

namespace simulator::film {

std::string timeStamp() {
    const char* fixed = std::getenv("FILM_CLOCK");
    if (fixed != nullptr && *fixed != '\0')
        return fixed;
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    ::gmtime_r(&now, &parts);
    std::array<char, 32> text{};
    const std::size_t length = std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts);
    return {text.data(), length};
}

} // namespace simulator::film
