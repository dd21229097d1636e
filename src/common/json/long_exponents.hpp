// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace kinovane::json {

/// The digits of an exponent that are too many for some parsers, without the sign.
struct LongExponent {
    std::size_t offset; ///< In the document.
    std::size_t length;

    bool operator==(const LongExponent&) const = default;
};

using LongExponents = std::vector<LongExponent>;

/// The exponents of more than nine digits in a document. Where the document is not valid JSON, the rest of
/// the result means nothing.
LongExponents longExponentsOf(std::string_view document);

} // namespace kinovane::json
