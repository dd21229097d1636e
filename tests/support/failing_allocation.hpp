// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <limits>

namespace kinovane::test {

/// While it lives, lets allocations with operator new fail, on every thread of this process. One at a time.
///
/// A test program that has failing_allocation.cpp among its own sources uses these allocation functions in
/// place of the C++ library's. They are no part of the library of test support: a sanitizer can no longer
/// tell operator new from malloc in such a program.
class FailingAllocation {
  public:
    static constexpr std::size_t forever = std::numeric_limits<std::size_t>::max();

    /// The allocation with this index fails, counted from 0, and `times` in a row.
    explicit FailingAllocation(std::size_t index, std::size_t times = 1);
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;
    ~FailingAllocation();

    /// Whether an allocation has failed. When none has, the index lies behind the last one.
    bool struck() const;

    /// How many allocations there were so far.
    std::size_t count() const;
};

} // namespace kinovane::test
