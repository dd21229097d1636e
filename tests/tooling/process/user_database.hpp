// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace kinovane::test {

/// Replaces the user database of this process during its lifetime, so that tests do not use the real home
/// directory. Every user has the same entry.
class UserDatabase {
  public:
    /// Without `home` there is no such user.
    explicit UserDatabase(std::optional<std::string> home);
    UserDatabase(const UserDatabase&) = delete;
    UserDatabase& operator=(const UserDatabase&) = delete;
    ~UserDatabase();

    std::optional<std::string> home;
    int error = 0;                 ///< The return value of every query, unless it is 0.
    int silentError = 0;           ///< The value of errno after a query that finds no user.
    mutable int interruptions = 0; ///< How many queries fail with EINTR first.
    std::size_t bufferNeeded = 0;  ///< A query with a smaller buffer fails with ERANGE.
};

} // namespace kinovane::test
