// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string_view>

#include "common/record.hpp"

namespace simulator::film {

// Invented replies in the form of the command's real ones. They need no film.

json::object sampleReply(std::string_view command);

/// Lacks a key that every reader of this reply needs.
json::object replyWithoutKey(std::string_view command);

/// Has another type where every reader of this reply needs a value of a certain type.
json::object replyOfWrongType(std::string_view command);

} // namespace simulator::film
