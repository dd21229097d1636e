// SPDX-License-Identifier: Apache-2.0

#include <crt_externs.h>

#include "tooling/process/inherited_environment.hpp"

namespace kinovane {

char** inheritedEnvironment() noexcept { return *::_NSGetEnviron(); }

} // namespace kinovane
