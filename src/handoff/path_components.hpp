// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>

namespace kinovane {

/// The components of a path, one after the other. Repeated slashes count as one. A path that ends in "/" has
/// "." as its last component, because it must name a directory.
class PathComponents {
  public:
    explicit PathComponents(std::string path) : path_(std::move(path)) {}

    /// The next component; empty after the last one.
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
