// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <kinovane/export.hpp>
#include <kinovane/version_macros.hpp>

/// The version of the library that is loaded at run time. With a shared library it may be newer than the
/// headers with which the program was compiled; version_macros.hpp has the version of those. Both symbols
/// give the major and minor number only.
extern "C" {
KINOVANE_EXPORT extern const double KinovaneCoreVersionNumber; ///< 1.0
KINOVANE_EXPORT extern const char KinovaneCoreVersionString[]; ///< "1.0"
}
