// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <string_view>

#include <kinovane/json.hpp>
#include <kinovane/process.hpp>

#include "common/json/decoder.hpp"

namespace kinovane {

/// Decodes a program's JSON reply, which is all of its standard output. Throws FilmToolError (invalidJSON);
/// its message begins with `context`.
template <class Reply>
Reply decodeReply(const std::string& reply, std::string_view context = {}) {
    try {
        return json::decode<Reply>(reply);
    } catch (const JSONDecodingError& error) {
        throw FilmToolError(FilmToolError::invalidJSON{std::string(context) + error.what()});
    }
}

} // namespace kinovane
