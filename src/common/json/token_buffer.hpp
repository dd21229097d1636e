// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kinovane::json {

/// Joins a key, string or number that the parser passes in several parts.
class TokenBuffer {
  public:
    void append(std::string_view part) { text_.append(part); }

    /// The whole token; valid until the next call.
    std::string_view join(std::string_view lastPart) {
        if (text_.empty())
            return lastPart;
        text_.append(lastPart);
        return text_;
    }

    /// Keeps some memory for the next token, but not as much as a long one took.
    void clear() {
        if (text_.empty())
            return;
        constexpr std::size_t mostKept = std::size_t{64} << 10U;
        if (text_.capacity() > mostKept)
            std::string().swap(text_);
        text_.clear();
    }

  private:
    std::string text_;
};

} // namespace kinovane::json
