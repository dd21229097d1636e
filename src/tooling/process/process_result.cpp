// SPDX-License-Identifier: Apache-2.0

#include <kinovane/process.hpp>

namespace kinovane {

bool ProcessResult::succeeded() const noexcept { return exitCode == 0; }

} // namespace kinovane
