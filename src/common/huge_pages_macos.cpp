// SPDX-License-Identifier: Apache-2.0

#include "common/huge_pages.hpp"

namespace kinovane {

void adviseHugePages(char* /*memory*/, std::size_t /*size*/) noexcept {}

} // namespace kinovane
