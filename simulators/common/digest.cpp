// SPDX-License-Identifier: Apache-2.0

#include "common/digest.hpp"

#include <array>

#include <openssl/evp.h>

#include "common/refusal.hpp"

namespace simulator {
namespace {

EVP_MD_CTX* evp(void* context) { return static_cast<EVP_MD_CTX*>(context); }

void expectSuccess(int result) {
    if (result != 1)
        throw Refusal("cannot compute SHA-256 digests on this machine");
}

} // namespace

void Digest::Release::operator()(void* context) const noexcept { EVP_MD_CTX_free(evp(context)); }

Digest::Digest() : context_(EVP_MD_CTX_new()) {
    expectSuccess(context_ ? 1 : 0);
    expectSuccess(EVP_DigestInit_ex(evp(context_.get()), EVP_sha256(), nullptr));
}

void Digest::add(std::span<const char> bytes) {
    expectSuccess(EVP_DigestUpdate(evp(context_.get()), bytes.data(), bytes.size()));
}

std::string Digest::finish() {
    static constexpr std::string_view digits = "0123456789abcdef";
    std::array<unsigned char, 32> sum{};
    expectSuccess(EVP_DigestFinal_ex(evp(context_.get()), sum.data(), nullptr));
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
