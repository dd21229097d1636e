// SPDX-License-Identifier: Apache-2.0

#include "common/digest.hpp"

#include <array>
#include <cstdlib>
#include <mutex>
#include <new>
#include <stdexcept>

#include <openssl/crypto.h>
#include <openssl/err.h>
#include <openssl/evp.h>

namespace kinovane {

namespace {

/// Checks the result of a libcrypto call that fails only when it is out of memory.
void check(int result) {
    if (result != 1)
        throw std::bad_alloc();
}

/// Locked while the algorithm is fetched. Never destroyed, because it is used at exit.
std::mutex& fetchMutex() {
    static auto& mutex = *new std::mutex;
    return mutex;
}

/// Waits for a fetch in progress. Runs at exit, before libcrypto's own clean-up, which must not begin during
/// a fetch.
void awaitFetch() { const std::lock_guard lock(fetchMutex()); }

/// Fetches SHA-256 from a separate library context, which is never freed. libcrypto frees the default context
/// at exit, when a worker thread may still be computing a digest.
EVP_MD* fetchAlgorithm() {
    const std::lock_guard lock(fetchMutex());
    [[maybe_unused]] static const int registered = std::atexit(awaitFetch);
    // Keeps libcrypto from registering its clean-up at exit, unless the application has already initialised
    // libcrypto. Leaves all other settings of libcrypto to the application.
    if (OPENSSL_init_crypto(OPENSSL_INIT_NO_ATEXIT, nullptr) != 1)
        throw std::runtime_error("libcrypto cannot be used any more, because the process is exiting");
    static OSSL_LIB_CTX* const context = OSSL_LIB_CTX_new();
    if (context == nullptr)
        throw std::bad_alloc();
    ERR_set_mark(); // Keeps the errors that the application has not read yet.
    EVP_MD* const algorithm = EVP_MD_fetch(context, "SHA2-256", nullptr);
    const bool outOfMemory =
        algorithm == nullptr && ERR_GET_REASON(ERR_peek_last_error()) == ERR_R_MALLOC_FAILURE;
    ERR_pop_to_mark();
    if (outOfMemory)
        throw std::bad_alloc();
    if (algorithm == nullptr)
        throw std::runtime_error("libcrypto on this machine has no SHA-256");
    return algorithm;
}

/// Fetches the algorithm once, because a fetch takes as long as the digest of a small file. After a failure
/// the next call tries again.
const EVP_MD* algorithm() {
    static const EVP_MD* const fetched = fetchAlgorithm();
    return fetched;
}

} // namespace

Digest::Digest() : algorithm_(algorithm()), context_(EVP_MD_CTX_new()) {
    if (context_ == nullptr)
        throw std::bad_alloc();
}

Digest::~Digest() { EVP_MD_CTX_free(context_); }

void Digest::update(std::span<const std::byte> bytes) {
    begin();
    check(EVP_DigestUpdate(context_, bytes.data(), bytes.size()));
}

std::string Digest::finish() {
    static constexpr char digits[] = "0123456789abcdef";
    std::array<unsigned char, 32> value{};
    unsigned size = 0;
    begin();
    check(EVP_DigestFinal_ex(context_, value.data(), &size));
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
    check(EVP_DigestInit_ex2(context_, algorithm_, nullptr));
    begun_ = true;
}

std::string digestText(std::span<const std::byte> bytes) {
    Digest digest;
    digest.update(bytes);
    return digest.finish();
}

} // namespace kinovane
