#include "common/digest.hpp"

#include <array>
#include <new>

#include <openssl/evp.h>

namespace kinovane {

namespace {

// The digest library fails only for want of memory or of its own configuration; neither leaves anything to
// try.
void require(int succeeded) {
    if (succeeded != 1)
        throw std::bad_alloc();
}

} // namespace

// The algorithm is fetched once for each object: looking it up costs as much as digesting a small file.
Digest::Digest() : algorithm_(EVP_MD_fetch(nullptr, "SHA2-256", nullptr)), context_(EVP_MD_CTX_new()) {
    if (algorithm_ == nullptr || context_ == nullptr) {
        EVP_MD_CTX_free(context_);
        EVP_MD_free(algorithm_);
        throw std::bad_alloc();
    }
}

Digest::~Digest() {
    EVP_MD_CTX_free(context_);
    EVP_MD_free(algorithm_);
}

void Digest::update(std::span<const std::byte> bytes) {
    begin();
    require(EVP_DigestUpdate(context_, bytes.data(), bytes.size()));
}

std::string Digest::finish() {
    static constexpr char digits[] = "0123456789abcdef";
    std::array<unsigned char, 32> value{};
    unsigned size = 0;
    begin();
    require(EVP_DigestFinal_ex(context_, value.data(), &size));
    begun_ = false;
    std::string text = "sha256:";
    static_assert(sizeof("sha256:") == prefixLength + 1);
    text.reserve(prefixLength + 2 * value.size());
    for (const unsigned char byte : value) {
        text += digits[byte >> 4U];
        text += digits[byte & 0xfU];
    }
    return text;
}

void Digest::begin() {
    if (begun_)
        return;
    require(EVP_DigestInit_ex2(context_, algorithm_, nullptr));
    begun_ = true;
}

std::string digestText(std::span<const std::byte> bytes) {
    Digest digest;
    digest.update(bytes);
    return digest.finish();
}

} // namespace kinovane
