// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <kinovane/export.hpp>
#include <kinovane/version_macros.hpp>

/// The version of the library that the program runs with, which may be newer than the headers it was built
/// with: those have the version in the macros of version_macros.hpp. Both symbols are major and minor number only.
extern "C" {
KINOVANE_EXPORT extern const double KinovaneCoreVersionNumber; ///< 1.0
KINOVANE_EXPORT extern const char KinovaneCoreVersionString[]; ///< "1.0"
}
