// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "common/json/failure.hpp"

namespace kinovane::json {

/// The wrong values of one map. The one with the least key is reported; but a later equal key may replace it,
/// and then the next is reported. So those with the least keys are kept, as many as fit a limit of memory.
/// When some were left out and all that were kept have been replaced, another pass over the document checks
/// the other keys.
class KeyFailures {
  public:
    /// An earlier pass has shown that the keys before this one have right values.
    void ignoreBefore(std::string_view key) { start_ = key; }

    /// Adds the failure of a key's value. `limit` is in bytes; one failure is kept whatever its size.
    void add(std::string_view key, Failure&& failure, std::size_t limit);

    /// Called when the key occurs again.
    void remove(std::string_view key);

    /// The failure to report, of the map with this number in the document.
    std::optional<Failure> takeFirst(std::size_t map);

  private:
    using Failures = std::map<std::string, Failure, std::less<>>;

    void erase(Failures::iterator position);

    Failures failures_;
    std::size_t size_ = 0;           ///< Of all failures, in bytes.
    std::string start_;              ///< The least key that is kept.
    std::optional<std::string> end_; ///< Keys from this one on are not kept.
};

} // namespace kinovane::json
