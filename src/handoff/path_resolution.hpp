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

/// Resolves a path relative to a start directory, component by component. Symbolic links are read and
/// followed here instead of by the operating system, so that it is known whether the path ends below the
/// start. The start is recognised by its identity (device and inode) wherever the path passes through it, so
/// a path may lead out and back in.
///
/// After a component that does not exist, resolution continues with the text of the path only: a dangling
/// link still has a target.
///
/// Holds a bounded number of descriptors, whatever the depth of the path.
class PathResolution {
  public:
    /// `start` must outlive this object.
    explicit PathResolution(const OpenDirectory& start) noexcept : start_(start) {}

    /// Resolves a relative path; to be called once. Returns an error when a system call fails, at a magic
    /// link, and (ESTALE) when directories were moved meanwhile. The queries below then describe the location
    /// at which resolution stopped.
    [[nodiscard]] std::error_code resolve(std::string path);

    /// Whether the resolved location exists.
    bool exists() const noexcept { return missing_ == std::errc(); }

    /// Whether the resolved location is below the start.
    bool isBelowStart() const noexcept { return passedStart_ && (!entered_.empty() || trailing_ > 0); }

    /// Whether the resolved location is the start itself.
    bool isAtStart() const noexcept { return passedStart_ && entered_.empty() && trailing_ == 0; }

    /// Whether resolution stopped at a magic link (see LinkKind). It is not followed, because the system
    /// might open another file than the link's text names.
    bool metMagicLink() const noexcept { return metMagicLink_; }

    /// Opens the resolved location, which must be below the start, with these flags and O_NOFOLLOW. An
    /// invalid descriptor leaves the reason in errno. When the location is a directory, the working directory
    /// becomes its parent.
    Descriptor open(int flags);

  private:
    struct EnteredDirectory {
        std::string name;
        OpenDirectory directory; ///< Closed when many others were entered after it.
    };
    using Pending = std::vector<PathComponents>; ///< The path and the link targets in it; the last is next.

    /// The directory in which the next component is looked up.
    const OpenDirectory& workingDirectory() const noexcept;
    [[nodiscard]] std::error_code resolveName(std::string name, Pending& pending);
    [[nodiscard]] std::error_code enterDirectory(std::string name);
    [[nodiscard]] std::error_code followLink(std::string name, Pending& pending);
    [[nodiscard]] std::error_code enterParent();
    void setBase(OpenDirectory directory);
    void beginTrailing(std::string name, std::errc missing);

    const OpenDirectory& start_;
    bool passedStart_ = true; ///< Whether `base_` is the start.
    OpenDirectory base_;      ///< The directory below which `entered_` lies; `start_` while this is closed.
    std::vector<EnteredDirectory> entered_; ///< From the start down to the working directory; else empty.
    std::string name_;                      ///< The first trailing component.
    std::size_t trailing_ = 0;              ///< How many components follow the working directory.
    std::errc missing_{};                   ///< Why nothing exists at the location.
    bool metMagicLink_ = false;
    int linksFollowed_ = 0;
};

} // namespace kinovane
