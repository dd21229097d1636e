// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace simulator {

/// A SHA-256 computation that is fed piece by piece.
class Digest {
  public:
    Digest();

    void add(std::span<const char> bytes);

    /// 64 lowercase hexadecimal digits. Call it once; nothing may be added afterwards.
    std::string finish();

  private:
    struct Release {
        void operator()(void* context) const noexcept;
    };
    std::unique_ptr<void, Release> context_;
};

/// The 64 digits of a text in one go.
std::string digestOf(std::string_view text);

} // namespace simulator
