// SPDX-License-Identifier: Apache-2.0

#include "common/digest.hpp"

#include <array>

#include <openssl/evp.h>

#include "common/refusal.hpp"

namespace simulator {
namespace {

void expectSuccess(bool success) {
    if (!success)
        throw Refusal("cannot compute SHA-256 digests on this machine");
}

} // namespace

Digest::Digest() : context_(EVP_MD_CTX_new(), EVP_MD_CTX_free) {
    expectSuccess(context_ && EVP_DigestInit_ex(context_.get(), EVP_sha256(), nullptr) == 1);
}

void Digest::add(std::span<const char> bytes) {
    expectSuccess(EVP_DigestUpdate(context_.get(), bytes.data(), bytes.size()) == 1);
}

std::string Digest::finish() {
    static constexpr std::string_view digits = "0123456789abcdef";
    std::array<unsigned char, 32> sum{};
    expectSuccess(EVP_DigestFinal_ex(context_.get(), sum.data(), nullptr) == 1);
    std::string text;
    for (const unsigned char byte : sum) {
        text += digits[byte >> 4U];
        text += digits[byte & 0x0FU];
    }
    return text;
}

std::string digestOf(std::string_view text) {
    Digest digest;
    digest.add(text);
    return digest.finish();
}

} // namespace simulator
