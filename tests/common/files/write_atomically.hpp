// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <string_view>

#include "common/files/atomic_file.hpp"

namespace kinovane::test {

inline void writeAtomically(const std::filesystem::path& location, std::string_view content) {
    AtomicFile file(location);
    file.write(content);
    file.flush();
    file.replaceTarget();
}

} // namespace kinovane::test
