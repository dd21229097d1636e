// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <stdexcept>

#include <unistd.h>

namespace kinovane::test {

/// During its lifetime this process has the effective user "nobody" when it was started by root, because file
/// permissions do not apply to root. Otherwise it does nothing.
class OrdinaryUser {
  public:
    OrdinaryUser() : isRoot_(::geteuid() == 0) {
        if (isRoot_ && ::seteuid(nobody) != 0)
            throw std::runtime_error("cannot drop root privileges");
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;
    ~OrdinaryUser() {
        if (isRoot_ && ::seteuid(0) != 0)
            ::_exit(99); // Later tests would run without root privileges.
    }

  private:
    static constexpr uid_t nobody = 65534;

    bool isRoot_;
};

} // namespace kinovane::test
