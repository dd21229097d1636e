// SPDX-License-Identifier: Apache-2.0

#include <system_error>

#include <unistd.h>

#include "tooling/process/child_descriptors.hpp"

namespace kinovane {

const int childDescriptorFlag = 0;

void keepStandardDescriptorsOnly(posix_spawn_file_actions_t& actions) {
    if (const int error = ::posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1))
        throw std::system_error(error, std::generic_category(), "posix_spawn_file_actions_addclosefrom_np");
}

} // namespace kinovane
