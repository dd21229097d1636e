// SPDX-License-Identifier: Apache-2.0

#include "peer_atomic.hpp"

#include <cerrno>
#include <cstdio>
#include <string>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

#include "peer_openssl.hpp"

namespace kinovane::benchmarks {

namespace {

void check(bool succeeded, const std::string& file) {
    if (!succeeded)
        throw std::system_error(errno, std::generic_category(), file);
}

} // namespace

void storeAtomicallyAndHash(std::string_view text, const std::filesystem::path& file) {
    const std::string temporary = file.string() + ".part";
    const int descriptor = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    check(descriptor >= 0, temporary);
    for (std::string_view left = text; !left.empty();) {
        const ssize_t count = ::write(descriptor, left.data(), left.size());
        check(count >= 0, temporary);
        left.remove_prefix(static_cast<std::size_t>(count));
    }
    check(::fsync(descriptor) == 0, temporary);
    check(::close(descriptor) == 0, temporary);
    check(std::rename(temporary.c_str(), file.c_str()) == 0, temporary);
    const int directory = ::open(file.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    check(directory >= 0 && ::fsync(directory) == 0, file.parent_path().string());
    ::close(directory);
    hashText(text);
}

} // namespace kinovane::benchmarks
