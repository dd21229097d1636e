// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <span>
#include <string>

struct evp_md_ctx_st;
struct evp_md_st;

namespace kinovane {

/// Computes SHA-256 digests, one after the other, as digest text: "sha256:" and 64 lowercase hexadecimal
/// digits. Not to be shared between threads. Throws std::bad_alloc when it is out of memory, and
/// std::runtime_error when the digest library of this machine has no SHA-256. It also works while the process
/// exits, in threads that are still running then.
class Digest {
  public:
    Digest();
    Digest(const Digest&) = delete;
    Digest& operator=(const Digest&) = delete;
    ~Digest();

    void update(std::span<const std::byte> bytes);

    /// The digest of all bytes since the last call; begins a new digest.
    std::string finish();

    /// Forgets the bytes so far.
    void restart() noexcept { begun_ = false; }

    static constexpr std::size_t prefixLength = 7; ///< Of "sha256:".

  private:
    void begin();

    const evp_md_st* algorithm_;
    evp_md_ctx_st* context_;
    bool begun_ = false; ///< The context is ready for more bytes of the digest at hand.
};

/// The digest text of bytes in memory.
std::string digestText(std::span<const std::byte> bytes);

} // namespace kinovane
