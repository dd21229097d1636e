// SPDX-License-Identifier: Apache-2.0

#include <cstdint>

#include <sys/mman.h>

#include "common/huge_pages.hpp"

namespace kinovane {

void adviseHugePages(char* memory, std::size_t size) noexcept {
    const auto offset = reinterpret_cast<std::uintptr_t>(memory) % hugePage;
    const std::size_t skipped = offset == 0 ? 0 : hugePage - offset;
    if (size >= skipped + hugePage)
        ::madvise(memory + skipped, (size - skipped) / hugePage * hugePage, MADV_HUGEPAGE);
}

} // namespace kinovane
