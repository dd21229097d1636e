// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <span>
#include <string>

struct evp_md_ctx_st;
struct evp_md_st;

namespace kinovane {

/// Computes SHA-256 digests, one after the other, as text: "sha256:" and 64 lowercase hexadecimal digits.
/// Not thread-safe: use one object for each thread. Also usable in threads that are still running while the
/// process exits. Throws std::bad_alloc, and std::runtime_error when libcrypto has no SHA-256.
class Digest {
  public:
    Digest();
    Digest(const Digest&) = delete;
    Digest& operator=(const Digest&) = delete;
    ~Digest();

    void update(std::span<const std::byte> bytes);

    /// The digest of all bytes since construction or the last `finish` or `restart`. The next `update` begins
    /// a new digest.
    std::string finish();

    /// Discards the bytes of the digest in progress.
    void restart() noexcept { begun_ = false; }

    static constexpr std::size_t prefixLength = 7; ///< The length of "sha256:".

  private:
    void begin();

    const evp_md_st* algorithm_;
    evp_md_ctx_st* context_;
    bool begun_ = false; ///< A digest is in progress.
};

/// The digest text of bytes in memory.
std::string digestText(std::span<const std::byte> bytes);

} // namespace kinovane
