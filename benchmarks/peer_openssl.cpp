// SPDX-License-Identifier: Apache-2.0

#include "peer_openssl.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <memory>
#include <stdexcept>
#include <system_error>
#include <thread>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <openssl/evp.h>

namespace kinovane::benchmarks {

namespace {

constexpr std::size_t bufferSize = std::size_t{1} << 20U;

class Hash {
  public:
    Hash() {
        if (!algorithm_ || !context_)
            throw std::runtime_error("no SHA-256");
    }

    void begin() { check(EVP_DigestInit_ex2(context_.get(), algorithm_.get(), nullptr)); }
    void add(const void* bytes, std::size_t count) { check(EVP_DigestUpdate(context_.get(), bytes, count)); }
    void end() { check(EVP_DigestFinal_ex(context_.get(), digest_.data(), nullptr)); }

  private:
    static void check(int result) {
        if (result != 1)
            throw std::runtime_error("SHA-256 failed");
    }

    std::unique_ptr<EVP_MD, decltype(&EVP_MD_free)> algorithm_{EVP_MD_fetch(nullptr, "SHA256", nullptr),
                                                               &EVP_MD_free};
    std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> context_{EVP_MD_CTX_new(), &EVP_MD_CTX_free};
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest_{};
};

} // namespace

void hashInMemory(std::uint64_t bytes) {
    const std::vector<char> buffer(bufferSize, 'x');
    Hash hash;
    hash.begin();
    while (bytes > 0) {
        const std::size_t count = std::min<std::uint64_t>(bytes, buffer.size());
        hash.add(buffer.data(), count);
        bytes -= count;
    }
    hash.end();
}

void hashInMemoryOnTwoThreads(std::uint64_t bytes) {
    const std::jthread other([bytes] { hashInMemory(bytes / 2); });
    hashInMemory(bytes - bytes / 2);
}

void hashFilesBare(const std::vector<std::filesystem::path>& files) {
    std::vector<char> buffer(bufferSize);
    Hash hash;
    for (const std::filesystem::path& file : files) {
        const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
        struct stat status{};
        if (descriptor < 0 || ::fstat(descriptor, &status) != 0)
            throw std::system_error(errno, std::generic_category(), file.string());
        hash.begin();
        for (auto left = static_cast<std::size_t>(status.st_size); left > 0;) {
            const ssize_t count = ::read(descriptor, buffer.data(), std::min(left, buffer.size()));
            if (count <= 0)
                throw std::runtime_error("cannot read " + file.string());
            hash.add(buffer.data(), static_cast<std::size_t>(count));
            left -= static_cast<std::size_t>(count);
        }
        hash.end();
        ::close(descriptor);
    }
}

void hashText(std::string_view text) {
    Hash hash;
    hash.begin();
    hash.add(text.data(), text.size());
    hash.end();
}

} // namespace kinovane::benchmarks
