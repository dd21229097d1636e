// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <string>
#include <string_view>

namespace kinovane {

/// Divides a stream of bytes into chunks of UTF-8 that end where a character ends. Bytes that are not UTF-8
/// are replaced as by repairUTF8, so that all chunks together are the repaired text of all bytes.
class UTF8Chunks {
  public:
    /// The next chunk: these bytes after those that were held back, without an incomplete character at the
    /// end, which is held back. May be empty.
    std::string next(std::string_view bytes);

    /// What is left once the stream has ended.
    std::string last();

  private:
    std::string incomplete_; ///< At most three bytes.
};

} // namespace kinovane
