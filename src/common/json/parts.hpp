// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kinovane::json {

/// A key or a value that the parser may give in parts.
class Parts {
  public:
    void add(std::string_view part) { parts_.append(part); }

    /// The parts so far and the rest; valid until the next call.
    std::string_view joined(std::string_view rest) {
        if (parts_.empty())
            return rest;
        parts_.append(rest);
        return parts_;
    }

    /// Keeps memory for the next, but not as much as a document may make one take.
    void drop() {
        if (parts_.empty())
            return;
        constexpr std::size_t mostKept = std::size_t{64} << 10U;
        if (parts_.capacity() > mostKept)
            std::string().swap(parts_);
        parts_.clear();
    }

  private:
    std::string parts_;
};

} // namespace kinovane::json
