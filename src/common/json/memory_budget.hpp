// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace kinovane::json {

/// Limits what the values of a document allocate, relative to the size of the document.
///
/// Values are stored while the document is parsed. An ordinary document needs up to three times its size for
/// them, but the smallest elements of a list take up to twenty times their text, and three times that while
/// the list grows. Therefore a single pass has a limit. A document that would exceed it is parsed twice:
/// first only to check it, so that one that is refused takes next to nothing, and then to store its values,
/// with exactly the capacity that its lists need.
class MemoryBudget {
  public:
    MemoryBudget() = default;

    static MemoryBudget unlimited() {
        MemoryBudget budget;
        budget.limit_ = noLimit;
        return budget;
    }

    /// Called before anything is stored, and again when the document turns out to be larger.
    void setDocumentSize(std::uint64_t size) {
        const std::size_t bytes = std::max(smallestSize, static_cast<std::size_t>(size));
        // Without values, or when they are known to be right, there is more memory for failures.
        keyFailureLimit_ = limit_ == noLimit ? 3 * bytes : bytes / 4;
        if (limit_ != noLimit)
            limit_ = 4 * bytes;
    }

    /// Called before an allocation, which must not be made when this returns false.
    [[nodiscard]] bool allocate(std::size_t bytes) {
        used_ += bytes;
        return !exceeded();
    }

    /// The same for a text. A std::string holds short ones without an allocation.
    [[nodiscard]] bool allocateText(std::size_t length) {
        constexpr std::size_t shortest = 16;
        return length < shortest || allocate(length + shortest);
    }

    void release(std::size_t bytes) { used_ -= bytes; }

    bool exceeded() const { return used_ > limit_; }

    /// How many bytes the failures that are kept for one map may take.
    std::size_t keyFailureLimit() const { return keyFailureLimit_; }

  private:
    static constexpr std::size_t noLimit = SIZE_MAX;
    static constexpr std::size_t smallestSize = std::size_t{4} << 10U;

    std::size_t limit_ = 4 * smallestSize;
    std::size_t keyFailureLimit_ = smallestSize / 4;
    std::size_t used_ = 0;
};

} // namespace kinovane::json
