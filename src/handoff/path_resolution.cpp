// SPDX-License-Identifier: Apache-2.0

#include "handoff/path_resolution.hpp"

#include <array>
#include <cerrno>
#include <climits>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "common/files/denied_access.hpp"
#include "common/files/file_lease.hpp"
#include "common/files/standard_descriptors.hpp"
#include "handoff/link_kind.hpp"

namespace kinovane {

namespace {

constexpr int maximumLinks = 40; // The limit of Linux.

/// The last directories entered that stay open, beside the start.
constexpr std::size_t maximumOpen = 16;

std::error_code lastError() { return {errno, std::generic_category()}; }

} // namespace

std::error_code PathResolution::resolve(std::string path) {
    Pending pending;
    pending.emplace_back(std::move(path));
    while (!pending.empty()) {
        std::string name = pending.back().next();
        std::error_code error;
        if (name.empty()) {
            pending.pop_back();
        } else if (name == "." || name == "..") {
            if (trailing_ > 0 && exists())
                missing_ = std::errc::not_a_directory;
            if (name == ".." && trailing_ > 0)
                --trailing_;
            else if (name == "..")
                error = enterParent();
        } else if (trailing_ > 0) {
            if (exists())
                missing_ = std::errc::not_a_directory;
            ++trailing_;
        } else {
            error = resolveName(std::move(name), pending);
        }
        if (error)
            return error;
    }
    return {};
}

const OpenDirectory& PathResolution::workingDirectory() const noexcept {
    if (!entered_.empty())
        return entered_.back().directory;
    return base_ ? base_ : start_;
}

void PathResolution::beginTrailing(std::string name, std::errc missing) {
    name_ = std::move(name);
    trailing_ = 1;
    if (exists())
        missing_ = missing;
}

void PathResolution::setBase(OpenDirectory directory) {
    passedStart_ = directory.identity() == start_.identity();
    base_ = std::move(directory);
    entered_.clear();
}

std::error_code PathResolution::resolveName(std::string name, Pending& pending) {
    struct stat status{};
    if (::fstatat(workingDirectory().descriptor(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
        // No permission to search is needed to continue with the text only.
        if (errno != ENOENT && errno != ENAMETOOLONG && (!isDenied(errno) || exists()))
            return lastError();
        beginTrailing(std::move(name), static_cast<std::errc>(errno));
        return {};
    }
    if (S_ISDIR(status.st_mode))
        return enterDirectory(std::move(name));
    if (S_ISLNK(status.st_mode) && exists())
        return followLink(std::move(name), pending);
    beginTrailing(std::move(name), {});
    return {};
}

std::error_code PathResolution::enterDirectory(std::string name) {
    OpenDirectory next = OpenDirectory::in(workingDirectory(), name.c_str());
    if (!next)
        return lastError();
    if (!passedStart_) {
        setBase(std::move(next));
        return {};
    }
    entered_.push_back({std::move(name), std::move(next)});
    if (entered_.size() > maximumOpen)
        entered_[entered_.size() - 1 - maximumOpen].directory.close();
    return {};
}

std::error_code PathResolution::followLink(std::string name, Pending& pending) {
    std::array<char, PATH_MAX> buffer{};
    const auto length =
        ::readlinkat(workingDirectory().descriptor(), name.c_str(), buffer.data(), buffer.size());
    if (length < 0)
        return lastError();
    std::string target(buffer.data(), static_cast<std::size_t>(length));
    const LinkKind kind = kindOfLink(workingDirectory().descriptor(), name.c_str(), target);
    if (kind == LinkKind::unknown)
        return lastError();
    if (kind == LinkKind::magic) {
        metMagicLink_ = true;
        return std::make_error_code(std::errc::too_many_symbolic_link_levels);
    }
    if (++linksFollowed_ > maximumLinks) {
        // The system would refuse it, so nothing exists there.
        beginTrailing(std::move(name), std::errc::too_many_symbolic_link_levels);
        return {};
    }
    if (target.empty()) {
        beginTrailing(std::move(name), std::errc::no_such_file_or_directory);
        return {};
    }
    if (target.starts_with('/')) {
        OpenDirectory top = OpenDirectory::at("/");
        if (!top)
            return lastError();
        setBase(std::move(top));
    }
    pending.emplace_back(std::move(target));
    return {};
}

/// Resolves "..".
///
/// Below the start, the parent is the directory from which the working directory was entered, even if one of
/// them is moved meanwhile. A parent that was closed is opened again as ".." of the working directory. That
/// may have been moved, so the identity of its parent must be the same as before; otherwise the whole path is
/// resolved again. A new directory may have the inode number of a removed one, but then it holds only what
/// was put there meanwhile.
///
/// Elsewhere the parent is the present one, as for the system.
std::error_code PathResolution::enterParent() {
    if (entered_.empty()) {
        OpenDirectory opened = OpenDirectory::in(workingDirectory(), "..");
        if (!opened)
            return lastError();
        setBase(std::move(opened));
        return {};
    }
    if (entered_.size() > 1 && !entered_[entered_.size() - 2].directory) {
        OpenDirectory& parent = entered_[entered_.size() - 2].directory;
        OpenDirectory opened = OpenDirectory::in(workingDirectory(), "..");
        if (!opened)
            return lastError();
        if (opened.identity() != parent.identity())
            return {ESTALE, std::generic_category()};
        parent = std::move(opened);
    }
    entered_.pop_back();
    return {};
}

Descriptor PathResolution::open(int flags) {
    std::string name = name_;
    if (trailing_ == 0) {
        name = entered_.back().name;
        if (const std::error_code error = enterParent()) {
            errno = error.value();
            return {};
        }
    }
    return retryWhileLeased([&] {
        return openAboveStandard(
            [&] { return ::openat(workingDirectory().descriptor(), name.c_str(), flags | O_NOFOLLOW); });
    });
}

} // namespace kinovane
