// SPDX-License-Identifier: Apache-2.0

#include "film/verified_copy.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <limits>
#include <span>
#include <system_error>
#include <utility>
#include <variant>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

#include <kinovane/handoff.hpp>

#include "film/staged_file.hpp"

namespace kinovane::tool {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t bufferSize = 1U << 20U;
constexpr mode_t permissions = 0777; // Not the bits that give a program the rights of the copy's owner.
constexpr mode_t ownerOnly = 0700;

[[noreturn]] void fail(const char* what, const fs::path& path, int error) {
    throw fs::filesystem_error(what, path, std::error_code(error, std::generic_category()));
}

std::array<timespec, 2> timesOf(const struct stat& status) {
#ifdef __APPLE__
    return {status.st_atimespec, status.st_mtimespec};
#else
    return {status.st_atim, status.st_mtim};
#endif
}

/// An open file or folder.
class OpenFile {
  public:
    OpenFile(const fs::path& path, int flags)
        : descriptor_(::open(path.c_str(), flags | O_CLOEXEC | O_NOFOLLOW)) {
        if (descriptor_ < 0)
            fail("cannot open", path, errno);
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
    ~OpenFile() { ::close(descriptor_); }

    int get() const noexcept { return descriptor_; }

  private:
    int descriptor_;
};

/// Removes the file from the system's memory, so that it is read from the disk.
void dropFromMemory([[maybe_unused]] int descriptor) {
#ifdef POSIX_FADV_DONTNEED
    ::posix_fadvise(descriptor, 0, 0, POSIX_FADV_DONTNEED);
#endif
}

} // namespace

VerifiedCopy::VerifiedCopy(fs::path source, fs::path target, StopToken stop, OnBytes onBytes)
    : source_(std::move(source)), target_(std::move(target)), stop_(std::move(stop)),
      onBytes_(std::move(onBytes)) {}

void VerifiedCopy::throwIfStopped() const {
    if (stop_.stopRequested())
        throw std::system_error(std::make_error_code(std::errc::operation_canceled));
}

void VerifiedCopy::advanceTo(const TreeEntry& file, std::uint64_t bytes) {
    const std::uint64_t reached = std::min(bytes, static_cast<std::uint64_t>(file.status.st_size));
    if (reached > reported_)
        onBytes_(reached - std::exchange(reported_, reached));
}

std::string VerifiedCopy::digestOf(const fs::path& folder, const fs::path& path, const ByteCount& onBytes) {
    // No digest is empty, so the outcome tells the digest that the file has.
    FilmArtifact artifact;
    artifact.path = path.string();
    artifact.bytes = std::numeric_limits<std::int64_t>::max();
    HandoffBuildOptions options;
    options.stop = stop_;
    if (onBytes)
        options.onProgress = [&](const VerificationProgress& progress) {
            if (progress.filesDone == 0)
                onBytes(progress.bytesDone);
        };
    const ArtifactOutcome outcome =
        VistrelHandoffBuilder::examine(folder, std::span(&artifact, 1), options).front();
    if (outcome.failure)
        throw fs::filesystem_error("cannot read", folder / path, outcome.failure);
    const auto* mismatch =
        outcome.refusal ? std::get_if<VistrelHandoffError::hashMismatch>(&outcome.refusal->value()) : nullptr;
    if (mismatch != nullptr)
        return mismatch->actual;
    fail("cannot read", folder / path, ENOENT);
}

CopyResult VerifiedCopy::copyFile(const TreeEntry& file, const std::set<std::string>& digests) {
    throwIfStopped();
    reported_ = 0;
    const fs::path target = target_ / file.path;
    struct stat present{};
    if (::lstat(target.c_str(), &present) == 0)
        return compareWithPresent(file, digests, present);

    StagedFile staged(target, ownerOnly);
    transfer(file, staged);
    const std::uint64_t half = static_cast<std::uint64_t>(file.status.st_size) / 2;
    const std::string copied = digestOf(target.parent_path(), staged.path().filename(),
                                        [&](std::uint64_t bytes) { advanceTo(file, half + bytes / 2); });
    if (digests.empty() || !digests.contains(copied)) {
        const std::string actual = digestOf(source_, file.path, {});
        if (!digests.empty() && !digests.contains(actual))
            return CopyResult::damaged;
        if (actual != copied)
            return digests.empty() ? CopyResult::changed : CopyResult::notAsWritten;
    }
    advanceTo(file, static_cast<std::uint64_t>(file.status.st_size));
    if (staged.place())
        return CopyResult::copied;
    // Another program has made a file of that name meanwhile.
    if (::lstat(target.c_str(), &present) != 0)
        fail("cannot examine", target, errno);
    return compareWithPresent(file, digests, present);
}

CopyResult VerifiedCopy::compareWithPresent(const TreeEntry& file, const std::set<std::string>& digests,
                                            const struct stat& present) {
    if (!S_ISREG(present.st_mode) || (digests.empty() && present.st_size != file.status.st_size))
        return CopyResult::differs;
    const std::string actual =
        digestOf(target_, file.path, [&](std::uint64_t bytes) { advanceTo(file, bytes); });
    advanceTo(file, static_cast<std::uint64_t>(file.status.st_size));
    const bool isEqual =
        digests.empty() ? actual == digestOf(source_, file.path, {}) : digests.contains(actual);
    return isEqual ? CopyResult::present : CopyResult::differs;
}

void VerifiedCopy::transfer(const TreeEntry& file, StagedFile& staged) {
    const fs::path location = source_ / file.path;
    const OpenFile source(location, O_RDONLY | O_NONBLOCK | O_NOCTTY);
    struct stat status{};
    if (::fstat(source.get(), &status) != 0)
        fail("cannot examine", location, errno);
    if (!S_ISREG(status.st_mode))
        fail("cannot read", location, EINVAL);
    std::vector<char> buffer(bufferSize);
    for (std::uint64_t done = 0;;) {
        throwIfStopped();
        const ssize_t count = ::read(source.get(), buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            fail("cannot read", location, errno);
        if (count == 0)
            break;
        staged.write({buffer.data(), static_cast<std::size_t>(count)});
        done += static_cast<std::uint64_t>(count);
        advanceTo(file, done / 2);
    }
    const std::array<timespec, 2> times = timesOf(status);
    ::fchmod(staged.descriptor(), status.st_mode & permissions);
    ::futimens(staged.descriptor(), times.data());
    staged.sync();
    dropFromMemory(staged.descriptor());
}

CopyResult VerifiedCopy::makeLink(const fs::path& path, const fs::path& text) const {
    const fs::path target = target_ / path;
    if (::symlink(text.c_str(), target.c_str()) == 0)
        return CopyResult::copied;
    if (errno != EEXIST)
        fail("cannot make a link", target, errno);
    std::error_code error;
    return fs::read_symlink(target, error) == text && !error ? CopyResult::present : CopyResult::differs;
}

CopyResult VerifiedCopy::makeFolder(const fs::path& path) const {
    const fs::path target = target_ / path;
    if (::mkdir(target.c_str(), ownerOnly) == 0)
        return CopyResult::copied;
    if (errno != EEXIST)
        fail("cannot make a folder", target, errno);
    struct stat present{};
    if (::lstat(target.c_str(), &present) != 0 || !S_ISDIR(present.st_mode))
        return CopyResult::differs;
    removeUnfinishedFiles(target);
    return CopyResult::present;
}

void VerifiedCopy::finishFolder(const TreeEntry& folder) const {
    const OpenFile target(target_ / folder.path, O_RDONLY | O_DIRECTORY);
    const std::array<timespec, 2> times = timesOf(folder.status);
    ::fchmod(target.get(), folder.status.st_mode & permissions);
    ::futimens(target.get(), times.data());
    syncFolder(folder.path);
}

void VerifiedCopy::syncFolder(const fs::path& path) const {
    const OpenFile target(target_ / path, O_RDONLY | O_DIRECTORY);
    if (::fsync(target.get()) != 0 && errno != EINVAL)
        fail("cannot write", target_ / path, errno);
}

} // namespace kinovane::tool
