// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <map>
#include <string>
#include <vector>

namespace kinovane {

/// The NULL-ended list of texts that starting a program wants. Owns the texts.
class TextVector {
  public:
    void add(std::string text) { texts_.push_back(std::move(text)); }

    /// Valid until the next `add`.
    char* const* data();

  private:
    std::vector<std::string> texts_;
    std::vector<char*> pointers_;
};

/// This process's environment with `additions` merged over it, every key once.
TextVector mergedEnvironment(const std::map<std::string, std::string>& additions);

} // namespace kinovane
