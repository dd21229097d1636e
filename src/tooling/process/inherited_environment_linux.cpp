// SPDX-License-Identifier: Apache-2.0

#include <unistd.h>

#include "tooling/process/inherited_environment.hpp"

namespace kinovane {

char** inheritedEnvironment() noexcept { return ::environ; }

} // namespace kinovane
