// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>

namespace kinovane {

/// The components of a path, one after the other. Slashes in a row count as one. A path that ends in "/" ends
/// in a component ".", because what it names has to be a directory.
class PathComponents {
  public:
    explicit PathComponents(std::string path) : path_(std::move(path)) {}

    /// The next component; empty when there is none left.
    std::string next() {
        const std::size_t start = path_.find_first_not_of('/', position_);
        if (start == std::string::npos)
            return std::exchange(position_, path_.size()) < path_.size() ? "." : "";
        position_ = std::min(path_.find('/', start), path_.size());
        return path_.substr(start, position_ - start);
    }

  private:
    std::string path_;
    std::size_t position_ = 0;
};

} // namespace kinovane
