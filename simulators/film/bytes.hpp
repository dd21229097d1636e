// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace film {

/// The bytes of a file under construction. `big` writes the most significant byte first, `little` the least
/// significant one.
class Bytes {
  public:
    Bytes& text(std::string_view bytes);
    Bytes& zeros(std::size_t count);
    Bytes& byte(std::uint32_t value);
    Bytes& big16(std::uint32_t value);
    Bytes& big32(std::uint32_t value);
    Bytes& little16(std::uint32_t value);
    Bytes& little32(std::uint32_t value);

    std::size_t size() const noexcept { return content_.size(); }
    const std::string& content() const noexcept { return content_; }

  private:
    std::string content_;
};

/// A size that must fit the 32 bits that all formats here have for it.
std::uint32_t size32(std::size_t size);

} // namespace film
