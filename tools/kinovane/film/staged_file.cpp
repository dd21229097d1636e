// SPDX-License-Identifier: Apache-2.0

#include "film/staged_file.hpp"

#include <array>
#include <cerrno>
#include <cstdio>
#include <string>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include "session/console.hpp"

namespace kinovane::tool {

namespace fs = std::filesystem;

namespace {

[[noreturn]] void cannotCreateIn(const fs::path& folder) {
    throw fs::filesystem_error("cannot create a file", folder,
                               std::error_code(errno, std::generic_category()));
}

/// std::random_device would open a file with some C++ libraries, and its errors would not name the folder.
std::string randomNameIn(const fs::path& folder) {
    std::array<unsigned, 2> random{};
    if (::getentropy(random.data(), sizeof random) != 0)
        cannotCreateIn(folder);
    return std::string(StagedFile::prefix) + std::to_string(random[0]) + "-" + std::to_string(random[1]);
}

/// Whether the file system does not have hard links, so that `link` cannot be used.
bool hasNoLinks(int error) {
    return error == EPERM || error == EOPNOTSUPP || error == ENOSYS || error == EMLINK || error == ENOTSUP;
}

/// Gives a file another name, if there is nothing of that name yet.
int renameWithoutReplacing(const char* from, const char* to) {
#if defined(__linux__) && defined(RENAME_NOREPLACE)
    if (::renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0)
        return 0;
    if (errno != EINVAL && errno != ENOSYS)
        return errno;
#elif defined(__APPLE__)
    if (::renamex_np(from, to, RENAME_EXCL) == 0)
        return 0;
    if (errno != ENOTSUP)
        return errno;
#endif
    if (::link(from, to) == 0) {
        ::unlink(from);
        return 0;
    }
    if (!hasNoLinks(errno))
        return errno;
    // The last resort has a gap between the check and the renaming; such a file system offers nothing better.
    if (::faccessat(AT_FDCWD, to, F_OK, AT_SYMLINK_NOFOLLOW) == 0)
        return EEXIST;
    return ::rename(from, to) == 0 ? 0 : errno;
}

} // namespace

StagedFile::StagedFile(fs::path target, mode_t mode) : target_(std::move(target)) {
    const fs::path folder = target_.has_parent_path() ? target_.parent_path() : ".";
    do {
        path_ = folder / randomNameIn(folder);
        descriptor_ = ::open(path_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, mode);
    } while (descriptor_ < 0 && (errno == EEXIST || errno == EINTR));
    if (descriptor_ < 0)
        cannotCreateIn(folder);
    ::flock(descriptor_, LOCK_EX | LOCK_NB); // Tells other runs that the file is in use.
}

StagedFile::~StagedFile() {
    if (!path_.empty())
        ::unlink(path_.c_str());
    ::close(descriptor_);
}

void StagedFile::fail() const {
    throw fs::filesystem_error("cannot write", target_, std::error_code(errno, std::generic_category()));
}

void StagedFile::write(std::string_view bytes) {
    if ((errno = writeAll(descriptor_, bytes)) != 0)
        fail();
}

void StagedFile::sync() {
#ifdef __APPLE__
    if (::fcntl(descriptor_, F_FULLFSYNC) == 0)
        return;
#endif
    if (::fsync(descriptor_) != 0 && errno != EINVAL)
        fail();
}

void StagedFile::replace() {
    if (::rename(path_.c_str(), target_.c_str()) != 0)
        fail();
    path_.clear();
}

bool StagedFile::place() {
    errno = renameWithoutReplacing(path_.c_str(), target_.c_str());
    if (errno == EEXIST)
        return false;
    if (errno != 0)
        fail();
    path_.clear();
    return true;
}

void removeUnfinishedFiles(const fs::path& folder) {
    std::error_code error;
    for (fs::directory_iterator entry(folder, error); !error && entry != fs::directory_iterator();
         entry.increment(error)) {
        const fs::path path = entry->path();
        if (!path.filename().native().starts_with(StagedFile::prefix))
            continue;
        const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
        if (descriptor < 0)
            continue;
        if (::flock(descriptor, LOCK_EX | LOCK_NB) == 0)
            ::unlink(path.c_str());
        ::close(descriptor);
    }
}

void writeFile(const fs::path& file, std::string_view bytes) {
    const auto fail = [&](int error) {
        throw fs::filesystem_error("cannot write", file, std::error_code(error, std::generic_category()));
    };
    struct stat status{};
    const bool exists = ::stat(file.c_str(), &status) == 0;
    if (!exists || S_ISREG(status.st_mode)) {
        std::error_code error;
        const fs::path target = fs::weakly_canonical(fs::absolute(file), error);
        if (error)
            fail(error.value());
        StagedFile staged(target);
        if (exists)
            ::fchmod(staged.descriptor(), status.st_mode & 07777U);
        staged.write(bytes);
        staged.sync();
        staged.replace();
        return;
    }
    const int descriptor = ::open(file.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
    if (descriptor < 0)
        fail(errno);
    const int error = writeAll(descriptor, bytes);
    ::close(descriptor);
    if (error != 0)
        fail(error);
}

} // namespace kinovane::tool
