// SPDX-License-Identifier: Apache-2.0

#include "support/heap_count.hpp"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <new>

#ifdef __APPLE__
#include <malloc/malloc.h>
#else
#include <malloc.h>
#endif

namespace {

std::atomic<std::size_t> allocated{0};
std::atomic<std::size_t> peak{0};

std::size_t sizeOf(void* memory) noexcept {
#ifdef __APPLE__
    return ::malloc_size(memory);
#else
    return ::malloc_usable_size(memory);
#endif
}

void* allocate(std::size_t size) noexcept {
    void* const memory = std::malloc(std::max<std::size_t>(size, 1)); // NOLINT(*-no-malloc)
    if (memory == nullptr)
        return nullptr;
    const std::size_t now = allocated += sizeOf(memory);
    std::size_t highest = peak;
    while (highest < now && !peak.compare_exchange_weak(highest, now)) {
    }
    return memory;
}

void release(void* memory) noexcept {
    if (memory == nullptr)
        return;
    allocated -= sizeOf(memory);
    std::free(memory); // NOLINT(*-no-malloc)
}

void* allocateOrThrow(std::size_t size) {
    void* const memory = allocate(size);
    if (memory == nullptr)
        throw std::bad_alloc();
    return memory;
}

} // namespace

namespace kinovane::test {

std::size_t allocatedBytes() noexcept { return allocated; }
std::size_t peakBytes() noexcept { return peak; }
void startPeak() noexcept { peak = allocated.load(); }

} // namespace kinovane::test

// The forms for over-aligned types are not replaced, because no counted code uses them.
void* operator new(std::size_t size) { return allocateOrThrow(size); }
void* operator new[](std::size_t size) { return allocateOrThrow(size); }
void* operator new(std::size_t size, const std::nothrow_t& /*none*/) noexcept { return allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t& /*none*/) noexcept { return allocate(size); }
void operator delete(void* memory) noexcept { release(memory); }
void operator delete[](void* memory) noexcept { release(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { release(memory); }
void operator delete[](void* memory, std::size_t /*size*/) noexcept { release(memory); }
void operator delete(void* memory, const std::nothrow_t& /*none*/) noexcept { release(memory); }
void operator delete[](void* memory, const std::nothrow_t& /*none*/) noexcept { release(memory); }
