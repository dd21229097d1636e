// SPDX-License-Identifier: Apache-2.0

#include "tooling/process/inherited_environment.hpp"

#include <unistd.h>

namespace kinovane {

char** inheritedEnvironment() noexcept { return ::environ; }

} // namespace kinovane
