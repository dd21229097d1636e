// SPDX-License-Identifier: Apache-2.0

#include "handoff/directory_walk.hpp"

#include <array>
#include <cerrno>
#include <climits>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "common/files/regular_file.hpp"
#include "handoff/link_kind.hpp"

namespace kinovane {

namespace {

constexpr int mostLinks = 40; // As the operating system does.

/// So many directories below the start are kept open, beside the start.
constexpr std::size_t mostOpen = 16;

std::error_code lastError() { return {errno, std::generic_category()}; }

} // namespace

std::error_code DirectoryWalk::follow(std::string path) {
    Pending pending;
    pending.emplace_back(std::move(path));
    while (!pending.empty()) {
        std::string name = pending.back().next();
        std::error_code error;
        if (name.empty()) {
            pending.pop_back();
        } else if (name == "." || name == "..") {
            if (beyond_ > 0 && exists())
                missing_ = std::errc::not_a_directory;
            if (name == ".." && beyond_ > 0)
                --beyond_;
            else if (name == "..")
                error = climb();
        } else if (beyond_ > 0) {
            if (exists())
                missing_ = std::errc::not_a_directory;
            ++beyond_;
        } else {
            error = enter(std::move(name), pending);
        }
        if (error)
            return error;
    }
    return {};
}

const OpenDirectory& DirectoryWalk::current() const noexcept {
    if (!steps_.empty())
        return steps_.back().directory;
    return base_ ? base_ : start_;
}

void DirectoryWalk::goOnByName(std::string name, std::errc missing) {
    name_ = std::move(name);
    beyond_ = 1;
    if (exists())
        missing_ = missing;
}

void DirectoryWalk::moveTo(OpenDirectory directory) {
    passedStart_ = directory.identity() == start_.identity();
    base_ = std::move(directory);
    steps_.clear();
}

std::error_code DirectoryWalk::enter(std::string name, Pending& pending) {
    struct stat status{};
    if (::fstatat(current().descriptor(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
        // By name alone, no right to search is needed.
        if (errno != ENOENT && errno != ENAMETOOLONG && (errno != EACCES || exists()))
            return lastError();
        goOnByName(std::move(name), static_cast<std::errc>(errno));
        return {};
    }
    if (S_ISDIR(status.st_mode))
        return enterDirectory(std::move(name));
    if (S_ISLNK(status.st_mode) && exists())
        return followLink(std::move(name), pending);
    goOnByName(std::move(name), {});
    return {};
}

std::error_code DirectoryWalk::enterDirectory(std::string name) {
    OpenDirectory next = OpenDirectory::in(current(), name.c_str());
    if (!next)
        return lastError();
    if (!passedStart_) {
        moveTo(std::move(next));
        return {};
    }
    steps_.push_back({std::move(name), std::move(next)});
    if (steps_.size() > mostOpen)
        steps_[steps_.size() - 1 - mostOpen].directory.close();
    return {};
}

std::error_code DirectoryWalk::followLink(std::string name, Pending& pending) {
    std::array<char, PATH_MAX> buffer{};
    const auto length = ::readlinkat(current().descriptor(), name.c_str(), buffer.data(), buffer.size());
    if (length < 0)
        return lastError();
    std::string target(buffer.data(), static_cast<std::size_t>(length));
    const LinkKind kind = kindOfLink(current().descriptor(), name.c_str(), target);
    if (kind == LinkKind::unknown)
        return lastError();
    if (kind == LinkKind::magic) {
        metMagicLink_ = true;
        return std::make_error_code(std::errc::too_many_symbolic_link_levels);
    }
    if (++links_ > mostLinks) {
        // A loop leads to no file. It ends here, by name.
        goOnByName(std::move(name), std::errc::too_many_symbolic_link_levels);
        return {};
    }
    if (target.empty()) {
        goOnByName(std::move(name), std::errc::no_such_file_or_directory);
        return {};
    }
    if (target.starts_with('/')) {
        OpenDirectory top = OpenDirectory::at("/");
        if (!top)
            return lastError();
        moveTo(std::move(top));
    }
    pending.emplace_back(std::move(target));
    return {};
}

/// Goes to the directory above.
///
/// Below the start that is the directory from which the present one was entered, even if either of them is
/// moved meanwhile. One that is no longer open is opened again as the parent of the present one, which may
/// have been moved to another place since; so it must be the same directory as before, or else the path is
/// followed once more. A directory made in the meantime may have got the number of one that was removed, but
/// then there is nothing in it except what was put there meanwhile.
///
/// Elsewhere it is the parent that the directory has now, as it is for the system.
std::error_code DirectoryWalk::climb() {
    if (steps_.empty()) {
        OpenDirectory above = OpenDirectory::in(current(), "..");
        if (!above)
            return lastError();
        moveTo(std::move(above));
        return {};
    }
    if (steps_.size() > 1 && !steps_[steps_.size() - 2].directory) {
        OpenDirectory& before = steps_[steps_.size() - 2].directory;
        OpenDirectory above = OpenDirectory::in(current(), "..");
        if (!above)
            return lastError();
        if (above.identity() != before.identity())
            return {ESTALE, std::generic_category()};
        before = std::move(above);
    }
    steps_.pop_back();
    return {};
}

Descriptor DirectoryWalk::open(int flags) {
    std::string name = name_;
    if (beyond_ == 0) {
        name = steps_.back().name;
        if (const std::error_code error = climb()) {
            errno = error.value();
            return {};
        }
    }
    return openDespiteLease([&] {
        return openAboveStandard(
            [&] { return ::openat(current().descriptor(), name.c_str(), flags | O_NOFOLLOW); });
    });
}

} // namespace kinovane
