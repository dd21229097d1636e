// SPDX-License-Identifier: Apache-2.0

#include "common/files/atomic_file.hpp"

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <random>
#include <string>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "common/files/location.hpp"
#include "common/files/standard_descriptors.hpp"

namespace kinovane {

namespace fs = std::filesystem;

namespace {

constexpr int longestLinkChain = 40;
constexpr int namesToTry = 100;
/// Without the set-user-ID and set-group-ID bits: with them, the owner of the directory could make this
/// process create a program that runs with its rights.
constexpr mode_t permissionBits = 0777;
constexpr mode_t writingByOthers = 0022;
constexpr mode_t ownerOnly = 0600;

[[noreturn]] void fail(const char* what, const fs::path& location, int error) {
    throw fs::filesystem_error(what, location, std::error_code(error, std::generic_category()));
}

/// Where the file itself lies: the location, or what the links there lead to.
fs::path finalLocation(fs::path location) {
    for (int link = 0; link < longestLinkChain; ++link) {
        std::error_code error;
        const fs::file_status status = fs::symlink_status(location, error);
        // Taken for no link, one that could not be looked at would be replaced, or refused as a device is.
        if (error && status.type() != fs::file_type::not_found)
            fail("cannot write", location, error.value());
        if (!fs::is_symlink(status))
            return location;
        location = location.parent_path() / fs::read_symlink(location);
    }
    fail("cannot write", location, ELOOP);
}

int flushToDisk(int descriptor) {
#ifdef F_FULLFSYNC
    // Here fsync stops at the drive's own cache; file systems without F_FULLFSYNC take the plain one.
    if (::fcntl(descriptor, F_FULLFSYNC) == 0)
        return 0;
#endif
    return static_cast<int>(retryInterrupted([&] { return ::fsync(descriptor); }));
}

/// A directory that may be written but not listed cannot be opened for reading; it still serves to name its
/// files.
Descriptor openDirectory(const fs::path& directory) {
    const auto open = [&](int flags) {
        return openAboveStandard([&] { return ::open(directory.c_str(), flags | O_DIRECTORY | O_CLOEXEC); });
    };
    Descriptor descriptor = open(O_RDONLY);
#ifdef O_PATH
    if (!descriptor && errno == EACCES)
        descriptor = open(O_PATH);
#endif
    return descriptor;
}

/// Of its own length: the target's name may already be as long as a name can be.
std::string temporaryName(std::random_device& random) {
    std::array<char, 40> name{};
    std::snprintf(name.data(), name.size(), ".kinovane-%08x%08x.tmp", random(), random());
    return name.data();
}

} // namespace

AtomicFile::AtomicFile(const fs::path& location) {
    // Some C++ libraries take it for the working directory.
    if (location.empty())
        fail("cannot write, because the location is empty", location, EINVAL);
    if (holdsNUL(location.native()))
        fail("cannot write", location, EINVAL);
    target_ = finalLocation(fs::absolute(location));
    if (!target_.has_filename() || target_.filename() == "." || target_.filename() == "..")
        fail("cannot write", location, EISDIR);
    directory_ = openDirectory(target_.parent_path());
    if (!directory_)
        fail("cannot write", target_, errno);
    findOldMode();
    create(); // The last step: the destructor does not run when this constructor throws.
}

AtomicFile::~AtomicFile() {
    if (!name_.empty())
        ::unlinkat(directory_.get(), name_.c_str(), 0);
}

void AtomicFile::findOldMode() {
    struct stat old{};
    if (::fstatat(directory_.get(), target_.filename().c_str(), &old, AT_SYMLINK_NOFOLLOW) != 0) {
        // Taken for none, an old file that could not be examined would lose its mode.
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

void AtomicFile::create() {
    // A replacement is its owner's alone until its content is complete and its mode is set.
    const mode_t mode = oldMode_ ? *oldMode_ & ownerOnly : mode_t{0666};
    // Reserved first, because what is created under one of these numbers would be written to at once.
    const ReservedStandardDescriptors reserved;
    if (reserved.error() != 0)
        fail("cannot create a temporary file beside", target_, reserved.error());
    std::random_device random;
    for (int attempt = 0; attempt < namesToTry; ++attempt) {
        // Before the file is there: a failure to allocate must not leave it behind.
        name_ = temporaryName(random);
        // Also for reading, because the file's own mode may not allow to open it for that.
        constexpr int flags = O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW;
        file_ = Descriptor(
            retryInterrupted([&] { return ::openat(directory_.get(), name_.c_str(), flags, mode); }));
        if (file_)
            return;
        if (errno != EEXIST)
            break;
    }
    fail("cannot create a temporary file beside", target_, errno);
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
    struct stat own{};
    if (::fstat(file_.get(), &own) != 0)
        fail("cannot examine", target_, errno);
    // A right to write that the old owner had given is not the new owner's to give.
    const bool sameOwner = own.st_uid == oldOwner_ && own.st_gid == oldGroup_;
    if (::fchmod(file_.get(), sameOwner ? *oldMode_ : *oldMode_ & ~writingByOthers) != 0)
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
    // Some file systems report a full disk only here. The descriptor is gone either way, so there is no
    // second attempt.
    if (::close(file_.release()) != 0 && errno != EINTR)
        fail("cannot write", target_, errno);
    if (::renameat(directory_.get(), name_.c_str(), directory_.get(), name.c_str()) != 0)
        fail("cannot replace", target_, errno);
    name_.clear();
    // EINVAL: the file system cannot flush directories. EBADF: this one may not be opened for that.
    if (flushToDisk(directory_.get()) != 0 && errno != EINVAL && errno != EBADF)
        fail("cannot make durable", target_, errno);
}

} // namespace kinovane
