// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>

struct evp_md_ctx_st;

namespace simulator {

/// A SHA-256 computation over chunks of data.
class Digest {
  public:
    Digest();

    void add(std::span<const char> bytes);

    /// 64 lowercase hexadecimal digits. Ends the computation: call it once, and nothing after it.
    std::string finish();

  private:
    std::unique_ptr<evp_md_ctx_st, void (*)(evp_md_ctx_st*)> context_;
};

/// The 64 digits of a text.
std::string digestOf(std::string_view text);

} // namespace simulator
