// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "common/files/descriptor.hpp"
#include "support/temporary_directory.hpp"

namespace kinovane::test {

/// What every file of a layout holds, inside the project and outside. So the digest never saves an
/// examination that looked at the wrong file.
inline constexpr std::string_view layoutContent = "content";
inline constexpr std::string_view layoutDigest =
    "sha256:ed7002b439e9ac845f22357d822bac1444730fbdb6016d3ec9432297b9ec9f73";

/// A place for one layout: the project's directory "film" with the file "film/a.png", and "outside/a.png"
/// beside it.
class LayoutPlace {
  public:
    LayoutPlace();

    TemporaryDirectory area;
    std::filesystem::path root; ///< What is given as the project's directory.

    // All names are relative to the area; a link's target is taken as it is written.
    void file(const std::string& name) const;
    void directory(const std::string& name) const;
    void link(const std::string& name, const std::filesystem::path& target) const;
    void fifo(const std::string& name) const;
    void socket(const std::string& name) const;
    /// Opens a file or directory until the place is gone; gives the system's name for what is open.
    std::filesystem::path opened(const std::string& name);
    void allow(const std::string& name, unsigned mode) const;
    /// Directories in one another, with a file "a.png" in the last one, deeper than one path can say.
    void deepFile(const std::string& name, const std::string& piece, int depth) const;
    /// The links name1 → a.png, name2 → name1, …
    void chain(const std::string& name, int length) const;

  private:
    Descriptor open_;
};

/// What examining an artifact at a path is to give.
struct LayoutOutcome {
    enum class Kind { accepted, unsafe, missing, failure };
    Kind kind = Kind::accepted;
    std::errc code{}; ///< Of a failure.

    bool operator==(const LayoutOutcome&) const = default;
};

/// What the plain digest of a file at a path is to give. It guards nothing and goes wherever the path leads.
struct LayoutDigest {
    std::string text; ///< Empty when it is refused.
    std::errc code{}; ///< Of the refusal.

    bool operator==(const LayoutDigest&) const = default;
};

struct Layout {
    std::string_view sentence;
    std::string path; ///< The artifact's.
    LayoutOutcome expected;
    LayoutDigest digest;
    std::function<void(LayoutPlace&)> make = [](LayoutPlace&) {};
};

/// Every way in which a path can lead somewhere. To be examined without an administrator's rights.
const std::vector<Layout>& containmentLayouts();

} // namespace kinovane::test
