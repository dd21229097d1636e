// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <stdexcept>

#include <unistd.h>

namespace kinovane::test {

/// While it lives, this process has no more rights to files than any user: permissions mean nothing to the
/// system's administrator, who may well be running the tests. Does nothing when somebody else runs them.
class OrdinaryUser {
  public:
    OrdinaryUser() : administrator_(::geteuid() == 0) {
        if (administrator_ && ::seteuid(nobody) != 0)
            throw std::runtime_error("cannot give up the administrator's rights");
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;
    ~OrdinaryUser() {
        if (administrator_ && ::seteuid(0) != 0)
            ::_exit(99); // Every later test would be about something else.
    }

  private:
    static constexpr uid_t nobody = 65534;

    bool administrator_;
};

} // namespace kinovane::test
