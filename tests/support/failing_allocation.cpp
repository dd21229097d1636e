// SPDX-License-Identifier: Apache-2.0

// Replaces every form of operator new and delete, because a sanitizer would combine its own version of a
// missing form with the ones here.

#include "support/failing_allocation.hpp"

#include <atomic>
#include <cstdlib>
#include <new>

namespace kinovane::test {

namespace {

// Constant-initialised, because allocations occur before dynamic initialisation.
constinit std::atomic<bool> active = false;
constinit std::atomic<bool> hasFailedOnce = false;
constinit std::atomic<std::size_t> allocations = 0;
constinit std::atomic<std::size_t> firstToFail = 0;
constinit std::atomic<std::size_t> failures = 0;

bool isToFail() noexcept {
    if (!active)
        return false;
    const std::size_t index = allocations++;
    if (index < firstToFail || index - firstToFail >= failures)
        return false;
    hasFailedOnce = true;
    return true;
}

void* allocate(std::size_t size) noexcept { return isToFail() ? nullptr : std::malloc(size == 0 ? 1 : size); }

void* allocate(std::size_t size, std::align_val_t alignment) noexcept {
    if (isToFail())
        return nullptr;
    const auto unit = static_cast<std::size_t>(alignment);
    return std::aligned_alloc(unit, (size + unit - 1) / unit * unit);
}

void* orThrow(void* memory) {
    if (memory == nullptr)
        throw std::bad_alloc();
    return memory;
}

} // namespace

FailingAllocation::FailingAllocation(std::size_t index, std::size_t times) {
    hasFailedOnce = false;
    allocations = 0;
    firstToFail = index;
    failures = times;
    active = true;
}

FailingAllocation::~FailingAllocation() { active = false; }

bool FailingAllocation::hasFailed() const { return hasFailedOnce; }

std::size_t FailingAllocation::count() const { return allocations; }

} // namespace kinovane::test

using kinovane::test::allocate;
using kinovane::test::orThrow;

// NOLINTBEGIN(*-new-delete-overloads, *-no-malloc)
void* operator new(std::size_t size) { return orThrow(allocate(size)); }
void* operator new[](std::size_t size) { return orThrow(allocate(size)); }
void* operator new(std::size_t size, std::align_val_t alignment) {
    return orThrow(allocate(size, alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
    return orThrow(allocate(size, alignment));
}
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept { return allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t& /*tag*/) noexcept { return allocate(size); }
void* operator new(std::size_t size, std::align_val_t alignment, const std::nothrow_t& /*tag*/) noexcept {
    return allocate(size, alignment);
}
void* operator new[](std::size_t size, std::align_val_t alignment, const std::nothrow_t& /*tag*/) noexcept {
    return allocate(size, alignment);
}

void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t /*size*/) noexcept { std::free(memory); }
void operator delete(void* memory, std::align_val_t /*alignment*/) noexcept { std::free(memory); }
void operator delete[](void* memory, std::align_val_t /*alignment*/) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t /*size*/, std::align_val_t /*alignment*/) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t /*size*/, std::align_val_t /*alignment*/) noexcept {
    std::free(memory);
}
void operator delete(void* memory, const std::nothrow_t& /*tag*/) noexcept { std::free(memory); }
void operator delete[](void* memory, const std::nothrow_t& /*tag*/) noexcept { std::free(memory); }
void operator delete(void* memory, std::align_val_t /*alignment*/, const std::nothrow_t& /*tag*/) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::align_val_t /*alignment*/, const std::nothrow_t& /*tag*/) noexcept {
    std::free(memory);
}
// NOLINTEND(*-new-delete-overloads, *-no-malloc)
