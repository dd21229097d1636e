// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <spawn.h>

namespace kinovane {

/// Lets a child have no descriptors but 0, 1 and 2, which earlier actions have set. `childDescriptorFlag`
/// must be among the flags of the child's attributes. Throws std::system_error whose text begins with the
/// name of the call that failed.
///
/// Linux: the child closes all others before it executes the program
/// (`posix_spawn_file_actions_addclosefrom_np`, glibc 2.34). macOS: the flag closes every descriptor that no
/// action names, so these three are named.
void keepStandardDescriptorsOnly(posix_spawn_file_actions_t& actions);

/// Linux: none. macOS: POSIX_SPAWN_CLOEXEC_DEFAULT.
extern const int childDescriptorFlag;

} // namespace kinovane
