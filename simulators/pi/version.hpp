// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>

namespace pi {

/// The version of this copy: the first line of the file VERSION beside the program, without the blanks around
/// it. Copies of different versions can so be made by copying the program. Without such a file it is
/// "0.0.0-simulator".
std::string version();

} // namespace pi
