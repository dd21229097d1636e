// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <algorithm>
#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "common/json/long_exponents.hpp"

namespace kinovane::json {

/// What a pass that only checks a document learns for the next pass. Lists and maps are numbered together, in
/// the order in which they begin.
class CheckResults {
  public:
    /// Shorter lists are stored without knowing their length: a number for each would take more memory than
    /// their elements.
    static constexpr std::size_t longList = 64;

    void addLongList(std::size_t number, std::size_t length) { longLists_.push_back({number, length}); }

    /// Puts the lists in order, once all of them have been added.
    void sortLists() {
        std::sort(longLists_.begin(), longLists_.end(),
                  [](const LongList& one, const LongList& other) { return one.number < other.number; });
        next_ = 0;
    }
    void clearLists() { longLists_.clear(); }

    /// The length of a list, or 0 when it is short. Called for every list in the order of their numbers.
    std::size_t lengthOf(std::size_t number) {
        if (next_ == longLists_.size() || longLists_[next_].number != number)
            return 0;
        return longLists_[next_++].length;
    }

    /// By the number of a map, the least key that has not been checked.
    std::map<std::size_t, std::string> uncheckedKeys;

    /// Those of the document, if the parser refuses any.
    std::optional<LongExponents> longExponents;

  private:
    struct LongList {
        std::size_t number;
        std::size_t length;
    };
    std::vector<LongList> longLists_;
    std::size_t next_ = 0;
};

} // namespace kinovane::json
