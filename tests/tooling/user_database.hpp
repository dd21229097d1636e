#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace kinovane::test {

/// While it lives, what the user database knows of the current user in this program. So the tests of what
/// lies in a home directory never touch the real one.
class UserDatabase {
  public:
    /// Without a home directory the user is unknown.
    explicit UserDatabase(std::optional<std::string> home);
    UserDatabase(const UserDatabase&) = delete;
    UserDatabase& operator=(const UserDatabase&) = delete;
    ~UserDatabase();

    std::optional<std::string> home;
    int error = 0;                ///< What every question is answered with, unless it is 0.
    std::size_t bufferNeeded = 0; ///< A question with a smaller buffer is refused.
};

} // namespace kinovane::test
