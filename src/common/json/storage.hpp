// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

/// How much memory a decoding may take, relative to the size of the document.
///
/// Values are stored while the document is read. An ordinary document needs up to three times its size for
/// them, but the smallest elements of a list take up to twenty times their text, and three times that while
/// the list grows. Therefore decoding directly has a limit. A document that would exceed it is read twice:
/// first only to check it, so that one that is refused takes next to nothing, and then to store its values,
/// with exactly the capacity that its lists need.
namespace kinovane::json {

/// Counts what the values of a document allocate.
class Storage {
  public:
    Storage() = default;

    static Storage unlimited() {
        Storage storage;
        storage.limit_ = noLimit;
        return storage;
    }

    /// Called before anything is stored, and again when the document turns out to be larger.
    void setDocumentSize(std::uint64_t size) {
        const std::size_t bytes = std::max(smallestSize, static_cast<std::size_t>(size));
        // Without values, or when they are known to be right, there is more memory for failures.
        keyFailureLimit_ = limit_ == noLimit ? 3 * bytes : bytes / 4;
        if (limit_ != noLimit)
            limit_ = 4 * bytes;
    }

    /// To be called before an allocation, which must not take place when this is false.
    [[nodiscard]] bool take(std::size_t bytes) {
        used_ += bytes;
        return !exceeded();
    }

    /// The same for a text. Short ones are part of the std::string.
    [[nodiscard]] bool takeText(std::size_t length) {
        constexpr std::size_t shortest = 16;
        return length < shortest || take(length + shortest);
    }

    void giveBack(std::size_t bytes) { used_ -= bytes; }

    bool exceeded() const { return used_ > limit_; }

    /// How much the failures that a map keeps may take.
    std::size_t keyFailureLimit() const { return keyFailureLimit_; }

  private:
    static constexpr std::size_t noLimit = SIZE_MAX;
    static constexpr std::size_t smallestSize = std::size_t{4} << 10U;

    std::size_t limit_ = 4 * smallestSize;
    std::size_t keyFailureLimit_ = smallestSize / 4;
    std::size_t used_ = 0;
};

/// What one pass over a document finds out for the next. Lists and maps are numbered in the order in which
/// they begin.
class Survey {
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
    void forgetLists() { longLists_.clear(); }

    /// The length of a list, or 0 when it is short. To be asked for every list in the order of their numbers.
    std::size_t lengthOf(std::size_t number) {
        if (next_ == longLists_.size() || longLists_[next_].number != number)
            return 0;
        return longLists_[next_++].length;
    }

    /// For the number of a map, the first key that is still to be examined.
    std::map<std::size_t, std::string> firstKeys;

  private:
    struct LongList {
        std::size_t number;
        std::size_t length;
    };
    std::vector<LongList> longLists_;
    std::size_t next_ = 0;
};

} // namespace kinovane::json
