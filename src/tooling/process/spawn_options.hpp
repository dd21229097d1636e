// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <spawn.h>

#include "common/files/descriptor.hpp"

namespace kinovane {

/// The descriptors that `posix_spawn` gives a child. Every function throws std::system_error whose text
/// begins with the name of the call that failed.
class SpawnFileActions {
  public:
    SpawnFileActions();
    SpawnFileActions(const SpawnFileActions&) = delete;
    SpawnFileActions& operator=(const SpawnFileActions&) = delete;
    ~SpawnFileActions();

    /// Gives the child these as its descriptors 0, 1 and 2, and no others. All must be above 2. If `input` is
    /// empty, the child reads from /dev/null.
    void connect(const Descriptor& input, int output, int errors);

    /// Makes this directory the child's working directory. To be called before `connect`.
    void changeDirectory(int directory);

    const posix_spawn_file_actions_t* get() const noexcept { return &actions_; }

  private:
    void duplicate(int from, int to);

    posix_spawn_file_actions_t actions_{};
};

/// The attributes that `posix_spawn` gives a child. Throws as SpawnFileActions does.
class SpawnAttributes {
  public:
    SpawnAttributes();
    SpawnAttributes(const SpawnAttributes&) = delete;
    SpawnAttributes& operator=(const SpawnAttributes&) = delete;
    ~SpawnAttributes();

    /// Gives the child an empty signal mask and default signal dispositions, whichever signals the
    /// application blocks or ignores. With `leadsGroup` the child is the leader of a new process group.
    void set(bool leadsGroup);

    const posix_spawnattr_t* get() const noexcept { return &attributes_; }

  private:
    posix_spawnattr_t attributes_{};
};

} // namespace kinovane
