// SPDX-License-Identifier: Apache-2.0

#include "bytes.hpp"

#include <limits>

#include "common/refusal.hpp"

namespace film {

Bytes& Bytes::text(std::string_view bytes) {
    content_ += bytes;
    return *this;
}

Bytes& Bytes::zeros(std::size_t count) {
    content_.append(count, '\0');
    return *this;
}

Bytes& Bytes::byte(std::uint32_t value) {
    content_ += static_cast<char>(static_cast<unsigned char>(value & 0xFFU));
    return *this;
}

Bytes& Bytes::big16(std::uint32_t value) { return byte(value >> 8U).byte(value); }

Bytes& Bytes::big32(std::uint32_t value) { return big16(value >> 16U).big16(value); }

Bytes& Bytes::little16(std::uint32_t value) { return byte(value).byte(value >> 8U); }

Bytes& Bytes::little32(std::uint32_t value) { return little16(value).little16(value >> 16U); }

std::uint32_t size32(std::size_t size) {
    if (size > std::numeric_limits<std::uint32_t>::max())
        throw simulator::Refusal("the film is too long for one media file");
    return static_cast<std::uint32_t>(size);
}

} // namespace film
