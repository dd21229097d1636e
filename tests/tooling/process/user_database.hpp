// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace kinovane::test {

/// While it lives, what the user database of this program knows of every user. So the tests of what
/// lies in a home directory never touch the real one.
class UserDatabase {
  public:
    /// Without a home directory the user is unknown.
    explicit UserDatabase(std::optional<std::string> home);
    UserDatabase(const UserDatabase&) = delete;
    UserDatabase& operator=(const UserDatabase&) = delete;
    ~UserDatabase();

    std::optional<std::string> home;
    int error = 0;                 ///< What every question is answered with, unless it is 0.
    int silentError = 0;           ///< Left in errno by an answer that the user is unknown.
    mutable int interruptions = 0; ///< So many questions are interrupted first.
    std::size_t bufferNeeded = 0;  ///< A question with a smaller buffer is refused.
};

} // namespace kinovane::test
