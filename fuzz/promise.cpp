// SPDX-License-Identifier: Apache-2.0

#include "promise.hpp"

#include <cstdio>
#include <cstdlib>

namespace kinovane::fuzz {

void promise(bool kept, std::string_view what, std::string_view detail) {
    if (kept)
        return;
    std::fprintf(stderr, "violated property: %.*s\n", static_cast<int>(what.size()), what.data());
    for (const char each : detail) {
        const auto byte = static_cast<unsigned char>(each);
        if (byte >= 0x20 && byte < 0x7F)
            std::fputc(byte, stderr);
        else
            std::fprintf(stderr, "\\x%02X", static_cast<unsigned>(byte));
    }
    std::fputc('\n', stderr);
    std::abort();
}

} // namespace kinovane::fuzz
