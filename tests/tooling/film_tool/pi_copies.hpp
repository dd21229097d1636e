// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <fstream>
#include <string>

namespace kinovane::test {

/// Installs an executable file as the copy of this version below a root. Returns its location.
inline std::filesystem::path installPi(const std::filesystem::path& root, const std::string& version) {
    const std::filesystem::path program = root / version / "pi/pi";
    std::filesystem::create_directories(program.parent_path());
    std::ofstream(program) << "never run";
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    return program;
}

} // namespace kinovane::test
