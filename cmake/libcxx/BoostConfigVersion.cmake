# SPDX-License-Identifier: Apache-2.0
# The compiler finds the headers, whatever their version.
set(PACKAGE_VERSION ${PACKAGE_FIND_VERSION})
set(PACKAGE_VERSION_COMPATIBLE TRUE)
