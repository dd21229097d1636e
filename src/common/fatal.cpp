// SPDX-License-Identifier: Apache-2.0

#include "common/fatal.hpp"

#include <cstdio>
#include <cstdlib>

namespace kinovane {

void fatalStop(std::string_view message) noexcept {
    std::fwrite(message.data(), 1, message.size(), stderr);
    std::fputc('\n', stderr);
    std::fflush(stderr);
    std::abort();
}

} // namespace kinovane
