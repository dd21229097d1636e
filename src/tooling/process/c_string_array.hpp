// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <utility>
#include <vector>

namespace kinovane {

/// An array of C strings with a null pointer at its end, as `posix_spawn` expects arguments and environment.
/// Owns the strings.
class CStringArray {
  public:
    void add(std::string text) { texts_.push_back(std::move(text)); }

    /// Valid until the next call of `add` or `data`.
    char* const* data();

  private:
    std::vector<std::string> texts_;
    std::vector<char*> pointers_;
};

} // namespace kinovane
