// SPDX-License-Identifier: Apache-2.0

#include <kinovane/version.hpp>

extern "C" {
const double KinovaneCoreVersionNumber = 1.0;
const char KinovaneCoreVersionString[] = "1.0";
}
