#include "common/atomic_file.hpp"

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

#include "common/descriptor.hpp"
#include "common/file_location.hpp"

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
        return retryInterrupted([&] { return ::open(directory.c_str(), flags | O_DIRECTORY | O_CLOEXEC); });
    };
    Descriptor descriptor(open(O_RDONLY));
#ifdef O_PATH
    if (!descriptor && errno == EACCES)
        descriptor = Descriptor(open(O_PATH));
#endif
    return descriptor;
}

/// Of its own length: the target's name may already be as long as a name can be.
std::string temporaryName(std::random_device& random) {
    std::array<char, 40> name{};
    std::snprintf(name.data(), name.size(), ".kinovane-%08x%08x.tmp", random(), random());
    return name.data();
}

/// The temporary file beside the target. Unless it was put in the target's place, it is removed.
class TemporaryFile {
  public:
    TemporaryFile(const fs::path& target, int directory, mode_t mode)
        : target_(target), directory_(directory) {
        std::random_device random;
        for (int attempt = 0; attempt < namesToTry; ++attempt) {
            // Before the file is there: a failure to allocate must not leave it behind.
            name_ = temporaryName(random);
            constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW;
            file_ = Descriptor(
                retryInterrupted([&] { return ::openat(directory_, name_.c_str(), flags, mode); }));
            if (file_)
                return;
            if (errno != EEXIST)
                break;
        }
        fail("cannot create a temporary file beside", target_, errno);
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() {
        if (!name_.empty())
            ::unlinkat(directory_, name_.c_str(), 0);
    }

    void write(std::string_view content) {
        while (!content.empty()) {
            const auto count =
                retryInterrupted([&] { return ::write(file_.get(), content.data(), content.size()); });
            if (count < 0)
                fail("cannot write", target_, errno);
            content.remove_prefix(static_cast<std::size_t>(count));
        }
    }

    /// Gives it the permissions of the file that it is to replace. A right to write that the old owner had
    /// given is not the new owner's to give.
    void setModeAfter(const struct stat& old) {
        struct stat own{};
        if (::fstat(file_.get(), &own) != 0)
            fail("cannot examine", target_, errno);
        mode_t mode = old.st_mode & permissionBits;
        if (own.st_uid != old.st_uid || own.st_gid != old.st_gid)
            mode &= ~writingByOthers;
        if (::fchmod(file_.get(), mode) != 0)
            fail("cannot set the mode of", target_, errno);
    }

    void putInPlace() {
        if (flushToDisk(file_.get()) != 0)
            fail("cannot write", target_, errno);
        // Some file systems report a full disk only here. The descriptor is gone either way, so no second
        // attempt.
        if (::close(file_.release()) != 0 && errno != EINTR)
            fail("cannot write", target_, errno);
        if (::renameat(directory_, name_.c_str(), directory_, target_.filename().c_str()) != 0)
            fail("cannot replace", target_, errno);
        name_.clear();
    }

  private:
    const fs::path& target_;
    int directory_;
    Descriptor file_;
    std::string name_;
};

} // namespace

void writeAtomically(const fs::path& location, std::string_view content) {
    writeAtomically(location, std::span(&content, 1));
}

void writeAtomically(const fs::path& location, std::span<const std::string_view> pieces) {
    // Some C++ libraries take it for the working directory.
    if (location.empty())
        fail("cannot write, because the location is empty", location, EINVAL);
    if (holdsNUL(location.native()))
        fail("cannot write", location, EINVAL);
    const fs::path target = finalLocation(fs::absolute(location));
    if (!target.has_filename() || target.filename() == "." || target.filename() == "..")
        fail("cannot write", location, EISDIR);

    const Descriptor directory = openDirectory(target.parent_path());
    if (!directory)
        fail("cannot write", location, errno);

    struct stat old{};
    const bool replaces =
        ::fstatat(directory.get(), target.filename().c_str(), &old, AT_SYMLINK_NOFOLLOW) == 0;
    // Taken for none, an old file that could not be looked at would lose its mode.
    if (!replaces && errno != ENOENT)
        fail("cannot write", location, errno);
    if (replaces && !S_ISREG(old.st_mode))
        fail("cannot write", location, S_ISDIR(old.st_mode) ? EISDIR : EOPNOTSUPP);

    // A replacement is its owner's alone until its content is complete and its mode is set.
    TemporaryFile temporary(target, directory.get(), replaces ? old.st_mode & ownerOnly : mode_t{0666});
    for (const std::string_view piece : pieces)
        temporary.write(piece);
    if (replaces)
        temporary.setModeAfter(old);
    temporary.putInPlace();

    // EINVAL: the file system cannot flush directories. EBADF: this one may not be opened for that.
    if (flushToDisk(directory.get()) != 0 && errno != EINVAL && errno != EBADF)
        fail("cannot make durable", location, errno);
}

} // namespace kinovane
