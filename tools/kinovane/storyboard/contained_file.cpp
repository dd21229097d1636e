// SPDX-License-Identifier: Apache-2.0

#include "storyboard/contained_file.hpp"

#include <cerrno>
#include <cstddef>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "film/film_tree.hpp"

namespace kinovane::tool {

namespace fs = std::filesystem;

namespace {

class Descriptor {
  public:
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { reset(-1); }

    int get() const noexcept { return number_; }

    void reset(int number) {
        const int former = std::exchange(number_, number);
        if (former >= 0)
            ::close(former);
    }

  private:
    int number_;
};

constexpr int flags = O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;

/// Whether all of the file was read.
bool readAll(int descriptor, std::string& content) {
    std::size_t done = 0;
    while (done < content.size()) {
        const ssize_t count = ::read(descriptor, content.data() + done, content.size() - done);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        done += static_cast<std::size_t>(count);
    }
    return true;
}

} // namespace

std::optional<fs::path> pathInside(const fs::path& root, const fs::path& path) {
    if (path.empty() || path.is_absolute() || path.native().find('\0') != std::string::npos)
        return std::nullopt;
    std::error_code error;
    fs::path file = fs::canonical(root / path, error);
    if (error || !isInsideLexically(file, root) || !fs::is_regular_file(file, error))
        return std::nullopt;
    return file;
}

std::optional<std::string> contentInside(const fs::path& root, const fs::path& file, std::uint64_t most) {
    Descriptor opened(::open(root.c_str(), flags | O_DIRECTORY));
    const fs::path relative = file.lexically_relative(root);
    for (auto part = relative.begin(); opened.get() >= 0 && part != relative.end(); ++part) {
        const int kind = std::next(part) == relative.end() ? 0 : O_DIRECTORY;
        opened.reset(::openat(opened.get(), part->c_str(), flags | kind));
    }
    struct stat status{};
    if (opened.get() < 0 || ::fstat(opened.get(), &status) != 0 || !S_ISREG(status.st_mode) ||
        static_cast<std::uint64_t>(status.st_size) > most)
        return std::nullopt;
    std::string content(static_cast<std::size_t>(status.st_size), '\0');
    if (!readAll(opened.get(), content))
        return std::nullopt;
    return content;
}

} // namespace kinovane::tool
