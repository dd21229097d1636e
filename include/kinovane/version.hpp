// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <kinovane/export.hpp>

/// The version of the library that the program runs with, which may be newer than the headers it was built
/// with.
extern "C" {
KINOVANE_EXPORT extern const double KinovaneCoreVersionNumber; ///< 1.0
KINOVANE_EXPORT extern const char KinovaneCoreVersionString[]; ///< "1.0"
}
