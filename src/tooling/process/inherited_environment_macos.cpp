// SPDX-License-Identifier: Apache-2.0

#include "tooling/process/inherited_environment.hpp"

#include <crt_externs.h>

namespace kinovane {

char** inheritedEnvironment() noexcept { return *::_NSGetEnviron(); }

} // namespace kinovane
