// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include <boost/json/basic_parser.hpp>

#include "common/json/receiver.hpp"

namespace kinovane::json {

/// Boost.JSON's parser with a receiver of its events.
class Parser {
  public:
    Parser(void* target, const Shape& shape);
    Parser(void* target, const Shape& shape, Survey& survey);

    /// Takes a chunk of the document and returns how much of it was used: less than all when the document has
    /// ended, when the receiver stopped, or when `error` says what is wrong.
    std::size_t take(std::string_view chunk, bool more, boost::json::error_code& error);

    /// Takes a whole document. Returns false when the receiver stopped. Throws JSONDecodingError when the
    /// document is not valid JSON.
    bool takeWhole(std::string_view document);

    /// After the end of a document: throws JSONDecodingError when a value is wrong. Gives the map for which
    /// that is undecided.
    std::optional<Failure::Undecided> conclude() const;

    Receiver& receiver() { return parser_.handler(); }

  private:
    boost::json::basic_parser<Receiver> parser_;
};

} // namespace kinovane::json
