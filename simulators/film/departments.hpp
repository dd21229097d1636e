// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string_view>

#include "documents.hpp"

namespace film {

/// The tasks of all departments before anything is done.
json::array newDepartments();

/// Marks the tasks of a phase as completed, one attempt further.
void completeTasks(json::object& project, std::string_view phase);

/// Marks the tasks of a phase as to be done again.
void reopenTasks(json::object& project, std::string_view phase);

} // namespace film
