#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "common/descriptor.hpp"

namespace kinovane {

/// A way through the file system, piece by piece, with every directory on it held open. Links are read and
/// followed here instead of by the operating system, so that it is known where the way really leads, and so
/// that nobody can exchange a directory behind its back.
///
/// Where nothing exists any more the way goes on by name alone: a link to nowhere still leads somewhere.
/// Copies share the open directories.
class DirectoryWalk {
  public:
    /// Begins at the top of the file system. Throws std::filesystem::filesystem_error when that cannot be
    /// opened.
    DirectoryWalk();

    /// Follows the pieces of `path`; one that begins with "/" starts again at the top. Returns an error when
    /// the file system does not let it go on; the walk then stands where it stopped.
    [[nodiscard]] std::error_code follow(std::string_view path);

    /// Whether something exists at the place reached.
    bool arrived() const noexcept { return missing_ == std::errc(); }

    /// Whether the place reached lies inside the directory that `other` has reached, and is not that
    /// directory itself.
    bool isInside(const DirectoryWalk& other) const;

    /// Whether the place reached is the very directory that `other` has reached.
    bool isAt(const DirectoryWalk& other) const;

    /// Opens the place reached with these flags; it must not be a link. An invalid descriptor leaves the
    /// reason in errno.
    Descriptor open(int flags) const;

    /// The directory reached, for system calls; negative when it is none.
    int descriptor() const noexcept;

  private:
    struct Step {
        std::string name;
        std::shared_ptr<const Descriptor> directory; ///< Null when it is no directory, or does not exist.
    };

    bool beginsAs(const DirectoryWalk& other) const;
    [[nodiscard]] std::error_code enter(std::string_view name, std::vector<std::string>& pending, int& links);

    std::vector<Step> steps_; ///< The first is the top of the file system, without a name.
    std::errc missing_{};     ///< Why nothing is here.
};

} // namespace kinovane
