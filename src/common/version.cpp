// SPDX-License-Identifier: Apache-2.0

#include <kinovane/version.hpp>

// The inner macros are there so that the arguments are expanded first.
#define JOIN(major, minor) major##.##minor
#define NUMBER(major, minor) JOIN(major, minor)
#define QUOTE(number) #number
#define TEXT(number) QUOTE(number)

extern "C" {
const double KinovaneCoreVersionNumber = NUMBER(KINOVANE_VERSION_MAJOR, KINOVANE_VERSION_MINOR);
const char KinovaneCoreVersionString[] = TEXT(KINOVANE_VERSION_MAJOR) "." TEXT(KINOVANE_VERSION_MINOR);
}
