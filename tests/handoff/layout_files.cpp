// SPDX-License-Identifier: Apache-2.0

#include <cerrno>
#include <cstring>
#include <stdexcept>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include "handoff/containment_layouts.hpp"

namespace kinovane::test {

namespace fs = std::filesystem;

namespace {

void require(bool succeeded, const std::string& what) {
    if (!succeeded)
        throw std::runtime_error(what + ": " + std::strerror(errno));
}

} // namespace

LayoutFiles::LayoutFiles() : root(area / "film") {
    allow("", 0755);
    file("film/a.png");
    file("outside/a.png");
}

void LayoutFiles::file(const std::string& name) const { area.write(name, layoutContent); }

void LayoutFiles::directory(const std::string& name) const { fs::create_directories(area / name); }

void LayoutFiles::link(const std::string& name, const fs::path& target) const {
    fs::create_directories((area / name).parent_path());
    fs::create_symlink(target, area / name);
}

void LayoutFiles::fifo(const std::string& name) const {
    require(::mkfifo((area / name).c_str(), 0666) == 0, "mkfifo");
}

void LayoutFiles::socket(const std::string& name) const {
    const int descriptor = ::socket(AF_UNIX, SOCK_STREAM, 0);
    require(descriptor >= 0, "socket");
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string path = area / name;
    require(path.size() < sizeof address.sun_path, "a socket's path is too long");
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    const void* plain = &address;
    require(::bind(descriptor, static_cast<const sockaddr*>(plain), sizeof address) == 0, "bind");
    ::close(descriptor);
}

fs::path LayoutFiles::opened(const std::string& name) {
    open_ = Descriptor(::open((area / name).c_str(), O_RDONLY | O_CLOEXEC));
    require(bool(open_), "open");
    return "/proc/self/fd/" + std::to_string(open_.get());
}

void LayoutFiles::allow(const std::string& name, unsigned mode) const {
    require(::chmod((area / name).c_str(), mode) == 0, "chmod");
}

void LayoutFiles::deepFile(const std::string& name, const std::string& component, int depth) const {
    directory(name);
    int parent = ::open((area / name).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    for (int level = 0; level < depth; ++level) {
        require(::mkdirat(parent, component.c_str(), 0755) == 0, "mkdirat");
        const int next = ::openat(parent, component.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        require(next >= 0, "openat");
        ::close(parent);
        parent = next;
    }
    const int file = ::openat(parent, "a.png", O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
    require(::write(file, layoutContent.data(), layoutContent.size()) > 0, "write");
    ::close(file);
    ::close(parent);
}

void LayoutFiles::chain(const std::string& name, int length) const {
    link(name + "1", "a.png");
    for (int index = 2; index <= length; ++index)
        link(name + std::to_string(index), fs::path(name + std::to_string(index - 1)).filename());
}

} // namespace kinovane::test
