// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "command_line.hpp"
#include "documents.hpp"

namespace film {

// Made-up replies in the form that the command's real ones have. They need no film.

json::object sampleReply(const Command& command);

/// Lacks a key that every reader of this reply needs.
json::object replyWithoutKey(const Command& command);

/// Has something else where every reader of this reply needs a value of a certain type.
json::object replyOfWrongType(const Command& command);

} // namespace film
