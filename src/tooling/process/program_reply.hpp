// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <string_view>

#include <kinovane/json.hpp>
#include <kinovane/process.hpp>

#include "common/json/decoder.hpp"

namespace kinovane {

/// Reads a program's answer, which must be the whole of its standard output. `context` stands in front of the
/// message. Throws FilmToolError (invalidJSON).
template <class Reply>
Reply decodeReply(const std::string& output, std::string_view context = {}) {
    try {
        return json::decode<Reply>(output);
    } catch (const JSONDecodingError& error) {
        throw FilmToolError(FilmToolError::invalidJSON{std::string(context) + error.what()});
    }
}

} // namespace kinovane
