// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <limits>

namespace kinovane::test {

/// Makes allocations with operator new fail during its lifetime, on every thread of this process. Only one
/// object may exist at a time.
///
/// A test program with failing_allocation.cpp among its sources uses the allocation functions there instead
/// of those of the C++ library. The file is not part of the support library, because a sanitizer cannot
/// distinguish operator new from malloc in such a program.
class FailingAllocation {
  public:
    static constexpr std::size_t forever = std::numeric_limits<std::size_t>::max();

    /// The allocations from this index on fail, `times` in a row; the first has index 0.
    explicit FailingAllocation(std::size_t index, std::size_t times = 1);
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;
    ~FailingAllocation();

    /// Whether an allocation has failed. If not, there were fewer allocations than the index.
    bool hasFailed() const;

    /// The number of allocations so far.
    std::size_t count() const;
};

} // namespace kinovane::test
