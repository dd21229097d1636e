// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "common/files/descriptor.hpp"

namespace kinovane {

/// Duplicates the application's standard input for a child process. The duplicate is close-on-exec and
/// above 2. It is empty if descriptor 0 is closed, or close-on-exec and so not meant for children. Throws
/// std::system_error, whose text begins with the name of the call that failed.
Descriptor duplicateStandardInput();

} // namespace kinovane
