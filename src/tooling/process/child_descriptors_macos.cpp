// SPDX-License-Identifier: Apache-2.0

#include <system_error>

#include <unistd.h>

#include "tooling/process/child_descriptors.hpp"

namespace kinovane {

const int childDescriptorFlag = POSIX_SPAWN_CLOEXEC_DEFAULT;

void keepStandardDescriptorsOnly(posix_spawn_file_actions_t& actions) {
    for (const int number : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (const int error = ::posix_spawn_file_actions_addinherit_np(&actions, number))
            throw std::system_error(error, std::generic_category(), "posix_spawn_file_actions_addinherit_np");
}

} // namespace kinovane
