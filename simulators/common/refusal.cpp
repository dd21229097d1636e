// SPDX-License-Identifier: Apache-2.0

#include "common/refusal.hpp"

#include <cerrno>
#include <string>

#include "common/json_text.hpp"

namespace simulator {

void refuseForSystem(std::string_view attempt, const std::filesystem::path& file, std::error_code reason) {
    throw Refusal("cannot " + std::string(attempt) + " " + jsonQuoted(file.native()) + ": " +
                  reason.message());
}

std::error_code lastSystemError() { return {errno, std::system_category()}; }

} // namespace simulator
