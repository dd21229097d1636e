// SPDX-License-Identifier: Apache-2.0

#include "tooling/process/spawn_options.hpp"

#include <csignal>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

#include "tooling/process/child_descriptors.hpp"

namespace kinovane {

namespace {

/// For functions that return their error instead of setting errno.
void require(const char* call, int error) {
    if (error != 0)
        throw std::system_error(error, std::generic_category(), call);
}

} // namespace

SpawnFileActions::SpawnFileActions() {
    require("posix_spawn_file_actions_init", ::posix_spawn_file_actions_init(&actions_));
}

SpawnFileActions::~SpawnFileActions() { ::posix_spawn_file_actions_destroy(&actions_); }

void SpawnFileActions::connect(const Descriptor& input, int output, int errors) {
    if (input)
        duplicate(input.get(), STDIN_FILENO);
    else
        require("posix_spawn_file_actions_addopen",
                ::posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0));
    duplicate(output, STDOUT_FILENO);
    duplicate(errors, STDERR_FILENO);
    keepStandardDescriptorsOnly(actions_);
}

void SpawnFileActions::changeDirectory(int directory) {
    require("posix_spawn_file_actions_addfchdir_np",
            ::posix_spawn_file_actions_addfchdir_np(&actions_, directory));
}

void SpawnFileActions::duplicate(int from, int to) {
    require("posix_spawn_file_actions_adddup2", ::posix_spawn_file_actions_adddup2(&actions_, from, to));
}

SpawnAttributes::SpawnAttributes() { require("posix_spawnattr_init", ::posix_spawnattr_init(&attributes_)); }

SpawnAttributes::~SpawnAttributes() { ::posix_spawnattr_destroy(&attributes_); }

void SpawnAttributes::set(bool leadsGroup) {
    sigset_t none;
    sigset_t all;
    // Without "::", because these are macros on macOS.
    sigemptyset(&none);
    sigfillset(&all);
    require("posix_spawnattr_setsigmask", ::posix_spawnattr_setsigmask(&attributes_, &none));
    require("posix_spawnattr_setsigdefault", ::posix_spawnattr_setsigdefault(&attributes_, &all));
    int flags = POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | childDescriptorFlag;
    if (leadsGroup) {
        require("posix_spawnattr_setpgroup", ::posix_spawnattr_setpgroup(&attributes_, 0));
        flags |= POSIX_SPAWN_SETPGROUP;
    }
    require("posix_spawnattr_setflags", ::posix_spawnattr_setflags(&attributes_, static_cast<short>(flags)));
}

} // namespace kinovane
