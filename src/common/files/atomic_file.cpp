// SPDX-License-Identifier: Apache-2.0

#include "common/files/atomic_file.hpp"

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include "common/files/denied_access.hpp"
#include "common/files/directory_access.hpp"
#include "common/files/flush.hpp"
#include "common/files/location.hpp"
#include "common/files/standard_descriptors.hpp"

namespace kinovane {

namespace fs = std::filesystem;

namespace {

constexpr int maximumLinks = 40;
constexpr int maximumAttempts = 100;
/// Excludes the set-user-ID and set-group-ID bits: with them, the owner of the old file could make this user
/// create a program that runs with this user's permissions.
constexpr mode_t permissionBits = 0777;
constexpr mode_t groupAndOthersWrite = 0022;
constexpr mode_t ownerOnly = 0600;

[[noreturn]] void fail(const char* what, const fs::path& location, int error) {
    throw fs::filesystem_error(what, location, std::error_code(error, std::generic_category()));
}

/// The location with a symbolic link at its end resolved, also when the last link leads to no file.
fs::path resolveLinks(fs::path location) {
    for (int link = 0; link < maximumLinks; ++link) {
        std::error_code error;
        const fs::file_status status = fs::symlink_status(location, error);
        // A link whose status cannot be read must not be mistaken for a file, and replaced.
        if (error && status.type() != fs::file_type::not_found)
            fail("cannot write", location, error.value());
        if (!fs::is_symlink(status))
            return location;
        location = location.parent_path() / fs::read_symlink(location);
    }
    fail("cannot write", location, ELOOP);
}

/// Opens a directory for the *at functions. One that may be written but not listed cannot be opened for
/// reading.
Descriptor openDirectory(const fs::path& directory) {
    const auto open = [&](int flags) {
        return openAboveStandard([&] { return ::open(directory.c_str(), flags | O_DIRECTORY | O_CLOEXEC); });
    };
    Descriptor descriptor = open(O_RDONLY);
    if (!descriptor && isDenied(errno))
        descriptor = open(searchFlags);
    return descriptor;
}

constexpr const char* cannotCreate = "cannot create a temporary file beside";

/// Not derived from the target's name, which may already have the maximum length. std::random_device would
/// open a file with some C++ libraries, and its errors would not name the target.
std::string temporaryName(const fs::path& target) {
    std::array<unsigned, 2> random{};
    if (::getentropy(random.data(), sizeof random) != 0)
        fail(cannotCreate, target, errno);
    std::array<char, 40> name{};
    std::snprintf(name.data(), name.size(), ".kinovane-%08x%08x.tmp", random[0], random[1]);
    return name.data();
}

} // namespace

AtomicFile::AtomicFile(const fs::path& location) {
    // Checked first: some C++ libraries make it the working directory.
    if (location.empty())
        fail("cannot write, because the location is empty", location, EINVAL);
    if (holdsNUL(location.native()))
        fail("cannot write", location, EINVAL);
    std::error_code error; // Without it, the exception of some C++ libraries names no file.
    const fs::path absolute = fs::absolute(location, error);
    if (error)
        fail("cannot write", location, error.value());
    target_ = resolveLinks(absolute);
    if (!target_.has_filename() || target_.filename() == "." || target_.filename() == "..")
        fail("cannot write", location, EISDIR);
    directory_ = openDirectory(target_.parent_path());
    if (!directory_)
        fail("cannot write", target_, errno);
    examineOldFile();
    createTemporaryFile(); // Last, because the destructor does not run when the constructor throws.
}

AtomicFile::~AtomicFile() {
    if (!temporaryName_.empty())
        ::unlinkat(directory_.get(), temporaryName_.c_str(), 0);
}

void AtomicFile::examineOldFile() {
    struct stat old{};
    if (::fstatat(directory_.get(), target_.filename().c_str(), &old, AT_SYMLINK_NOFOLLOW) != 0) {
        // Any other error must not be mistaken for a missing file: the mode of the old file would be lost.
        if (errno != ENOENT)
            fail("cannot write", target_, errno);
        return;
    }
    if (!S_ISREG(old.st_mode))
        fail("cannot write", target_, S_ISDIR(old.st_mode) ? EISDIR : EOPNOTSUPP);
    oldMode_ = old.st_mode & permissionBits;
    oldOwner_ = old.st_uid;
    oldGroup_ = old.st_gid;
}

void AtomicFile::createTemporaryFile() {
    // Until its content is complete and its mode is set, only the owner may open a replacement.
    const mode_t mode = oldMode_ ? *oldMode_ & ownerOnly : mode_t{0666};
    // Not openAboveStandard, which may call `openat` several times and so create several files.
    const ReservedStandardDescriptors reserved;
    if (reserved.error() != 0)
        fail(cannotCreate, target_, reserved.error());
    std::vector<Descriptor> low; // These numbers stay in use until a higher one is found, as there.
    for (int attempt = 0; attempt < maximumAttempts; ++attempt) {
        // Assigned before the file is created: if the allocation failed afterwards, the file would be left.
        temporaryName_ = temporaryName(target_);
        // O_RDWR for `read`: the final mode may not allow to open the file for reading.
        constexpr int flags = O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW;
        file_ = Descriptor(retryInterrupted(
            [&] { return ::openat(directory_.get(), temporaryName_.c_str(), flags, mode); }));
        if (file_ && !isStandard(file_.get()))
            return;
        if (!file_ && errno != EEXIST)
            break;
        if (file_) {
            ::unlinkat(directory_.get(), temporaryName_.c_str(), 0);
            low.push_back(std::move(file_));
        }
    }
    fail(cannotCreate, target_, errno);
}

void AtomicFile::write(std::string_view content) {
    while (!content.empty()) {
        const auto count =
            retryInterrupted([&] { return ::write(file_.get(), content.data(), content.size()); });
        if (count < 0)
            fail("cannot write", target_, errno);
        content.remove_prefix(static_cast<std::size_t>(count));
    }
}

void AtomicFile::flush() {
    setMode();
    if (flushToDisk(file_.get()) != 0)
        fail("cannot write", target_, errno);
}

void AtomicFile::setMode() {
    if (!oldMode_)
        return;
    struct stat status{};
    if (::fstat(file_.get(), &status) != 0)
        fail("cannot examine", target_, errno);
    // With another owner, these permissions would let the old owner write to this user's file.
    const bool sameOwner = status.st_uid == oldOwner_ && status.st_gid == oldGroup_;
    if (::fchmod(file_.get(), sameOwner ? *oldMode_ : *oldMode_ & ~groupAndOthersWrite) != 0)
        fail("cannot set the mode of", target_, errno);
}

std::size_t AtomicFile::read(std::span<std::byte> buffer) {
    const auto count =
        retryInterrupted([&] { return ::pread(file_.get(), buffer.data(), buffer.size(), readPosition_); });
    if (count < 0)
        fail("cannot read", target_, errno);
    readPosition_ += count;
    return static_cast<std::size_t>(count);
}

void AtomicFile::replaceTarget() {
    const fs::path name = target_.filename();
    // Some file systems report a full disk only at `close`. It is not repeated after EINTR, because the
    // descriptor is closed all the same.
    if (::close(file_.release()) != 0 && errno != EINTR)
        fail("cannot write", target_, errno);
    if (::renameat(directory_.get(), temporaryName_.c_str(), directory_.get(), name.c_str()) != 0)
        fail("cannot replace", target_, errno);
    temporaryName_.clear();
    // EINVAL or ENOTSUP: the file system cannot sync directories. EBADF: the directory was opened with
    // `searchFlags`.
    if (flushToDisk(directory_.get()) != 0 && errno != EINVAL && errno != ENOTSUP && errno != EBADF)
        fail("cannot make durable", target_, errno);
}

} // namespace kinovane
