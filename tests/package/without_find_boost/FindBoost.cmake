# SPDX-License-Identifier: Apache-2.0
# CMake 3.30 and newer have no such module; the packages are found through the configuration that Boost installs.
message(FATAL_ERROR "this CMake has no module FindBoost")
