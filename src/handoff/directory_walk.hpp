// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstddef>
#include <string>
#include <system_error>
#include <vector>

#include "common/files/descriptor.hpp"
#include "handoff/open_directory.hpp"
#include "handoff/path_components.hpp"

namespace kinovane {

/// Follows a path from a directory, component by component. Links are read and followed here instead of by
/// the operating system, so that it is known where the path leads: to a place below that directory, or to
/// some other place. A place below is one that was reached through the directory itself, which is recognised
/// by its identity, so a path may lead out of it and back in.
///
/// Where nothing exists any more the path goes on by name alone: a link to nothing still leads somewhere.
///
/// Holds a bounded number of descriptors, however deep the path leads.
class DirectoryWalk {
  public:
    /// `start` must outlive the walk.
    explicit DirectoryWalk(const OpenDirectory& start) noexcept : start_(start) {}

    /// Follows a relative path; to be called once. Returns an error when the file system does not let it go
    /// on, when it meets a magic link, and (ESTALE) when directories were moved
    /// meanwhile; the walk then stands where it stopped.
    [[nodiscard]] std::error_code follow(std::string path);

    /// Whether something exists at the place reached.
    bool exists() const noexcept { return missing_ == std::errc(); }

    /// Whether the place reached lies below the start.
    bool isBelowStart() const noexcept { return passedStart_ && (!steps_.empty() || beyond_ > 0); }

    /// Whether the place reached is the start itself.
    bool isAtStart() const noexcept { return passedStart_ && steps_.empty() && beyond_ == 0; }

    /// Whether the walk ended at a magic link (see LinkKind). Its text may lead to another file than the
    /// system would open, so it is not followed.
    bool metMagicLink() const noexcept { return metMagicLink_; }

    /// Opens the place reached, which must lie below the start, with these flags; it must not be a link. An
    /// invalid descriptor leaves the reason in errno. A directory is left for the one above it.
    Descriptor open(int flags);

  private:
    struct Step {
        std::string name;
        OpenDirectory directory; ///< Closed when more than a few steps follow it.
    };
    using Pending = std::vector<PathComponents>; ///< What is still to be followed; the last one comes first.

    const OpenDirectory& current() const noexcept;
    void goOnByName(std::string name, std::errc missing);
    void moveTo(OpenDirectory directory);
    [[nodiscard]] std::error_code enter(std::string name, Pending& pending);
    [[nodiscard]] std::error_code enterDirectory(std::string name);
    [[nodiscard]] std::error_code followLink(std::string name, Pending& pending);
    [[nodiscard]] std::error_code climb();

    const OpenDirectory& start_;
    bool passedStart_ = true; ///< Whether `base_` is the start.
    OpenDirectory base_;      ///< Where the steps begin; `start_` as long as it is closed.
    std::vector<Step> steps_; ///< The directories entered below the start; none elsewhere.
    std::string name_;        ///< The first component beyond the last directory, when there is one.
    std::size_t beyond_ = 0;  ///< How many components lie beyond the last directory.
    std::errc missing_{};     ///< Why nothing is here.
    bool metMagicLink_ = false;
    int links_ = 0; ///< How many were followed.
};

} // namespace kinovane
