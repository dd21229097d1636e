// SPDX-License-Identifier: Apache-2.0

#include "file_text.hpp"

#include <cerrno>
#include <fstream>
#include <stdexcept>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kinovane::benchmarks {

FileText::FileText(const std::filesystem::path& file) {
    const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
    struct stat status{};
    if (descriptor < 0 || ::fstat(descriptor, &status) != 0)
        throw std::system_error(errno, std::generic_category(), file.string());
    size_ = static_cast<std::size_t>(status.st_size);
    bytes_ = std::make_unique_for_overwrite<char[]>(size_);
    for (std::size_t done = 0; done < size_;) {
        const ssize_t count = ::read(descriptor, bytes_.get() + done, size_ - done);
        if (count <= 0)
            throw std::runtime_error("cannot read " + file.string());
        done += static_cast<std::size_t>(count);
    }
    ::close(descriptor);
}

void storeText(const std::filesystem::path& file, std::string_view text) {
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out.write(text.data(), static_cast<std::streamsize>(text.size()));
    if (!out.flush())
        throw std::runtime_error("cannot write " + file.string());
}

} // namespace kinovane::benchmarks
